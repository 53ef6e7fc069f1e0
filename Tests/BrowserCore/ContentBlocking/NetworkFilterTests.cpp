#include <gtest/gtest.h>

#include "Tests/BrowserCore/ContentBlocking/RuleTexts.h"

namespace orvel {
namespace {

constexpr std::string_view anchor = "^[^:]+://+([^:/]+\\.)?";

TEST(NetworkFilter, TranslatesPatterns) {
  const std::pair<std::string_view, std::string> cases[] = {
      {"||banner^", std::string(anchor) + "banner[/:?=&]"},
      {"||", std::string(anchor)},
      {"|", "^"},
      {"|||", std::string(anchor) + "$"},
      {"abcd", "abcd"},
      {"|abc", "^abc"},
      {"abc|", "abc$"},
      {"*abcd*", "abcd"},
      {"**abcd|", "abcd$"},
      {"abc*|", "abc.*$"},
      {"*|", "$"},
      {"|*abc*", "^.*abc"},
      {"||*a**", std::string(anchor) + ".*a"},
      {"a*b^", "a.*b[/:?=&]"},
      {"a+b.c?d&e=f", "a\\+b\\.c\\?d&e=f"},
      {"//ab", "//ab"},
      {"/ads/x", "/ads/x"},
      {"ab\"'<>;%~`cd\x01\x7F", "ab\"'<>;%~`cd\x01\x7F"},
      {"MixedCase", "MixedCase"},
      {"# no comment", "# no comment"},
      {"page.html#frag##x", "page\\.html#frag##x"},
  };
  for (const auto& [pattern, expected] : cases)
    EXPECT_EQ(described(pattern), "block " + expected + " [*]\nblock " + expected + " frame\n")
        << pattern;
  for (const char* pattern :
       {"||||", "abc", "*abc*", "/banner/", "/a/", "//", "abcd(", "abcd)", "abcd[", "abcd]",
        "abcd{", "abcd}", "abcd\\", "ab|cd", "abcd\xC3\xA9", "abcd\x80", "*"})
    EXPECT_EQ(described(pattern), "skipped 1\n") << pattern;
}

TEST(NetworkFilter, ReadsOptions) {
  // What "/ads$" and the options give, "block /ads" being left out.
  const std::pair<const char*, const char*> cases[] = {
      {"script", " [script]\n"},
      {"image,script,image", " [image,script]\n"},
      {"stylesheet", " [style-sheet]\n"},
      {"CSS", " [style-sheet]\n"},
      {"font,media", " [font,media]\n"},
      {"xmlhttprequest", " [raw]\n"},
      {"xhr,websocket,ping,other", " [raw]\n"},
      {"~script,~css", " [font,image,media,raw,svg]\n frame\n"},
      {"~image,script", " [script]\n"},
      {"~image,subdocument", " [font,media,raw,script,style-sheet,svg]\n frame\n"},
      {"~image,~frame", " [font,media,raw,script,style-sheet,svg]\n"},
      {"subdocument", " frame\n"},
      {"frame", " frame\n"},
      {"~subdocument", " [*]\n"},
      {"subdocument,~subdocument", " frame\n"},
      {"image,~subdocument", " [image]\n"},
      {"image,subdocument", " [image]\n frame\n"},
      {"third-party", " [*] 3p\n frame 3p\n"},
      {"script,3p", " [script] 3p\n"},
      {"~third-party,script", " [script] 1p\n"},
      {"script,1p", " [script] 1p\n"},
      {"first-party,script", " [script] 1p\n"},
      {"~3p,script", " [script] 1p\n"},
      {"third-party,first-party,font", " [font] 1p\n"},
      {"third-party=x,font", " [font] 3p\n"},
      {"match-case,font", " case [font]\n"},
      {"important,~object,font", " [font]\n"},
      {"domain=A.test|b.test,font", " if *a.test,*b.test [font]\n"},
      {"from=~a.test|~b.c.test,font", " unless *a.test,*b.c.test [font]\n"},
      {"domain=a.test,domain=b.test,font", " if *b.test [font]\n"},
      {"domain=||a.test|,font", " if *a.test [font]\n"},
      {"domain=*|a.test|b,font", " if *a.test [font]\n"},
      {"domain==a.test|b.test,font", " if *b.test [font]\n"},
      {"font,=image", " [font,image]\n"},
      {"font,,image,", " [font,image]\n"},
  };
  for (const auto& [options, expected] : cases) {
    std::string wanted;
    for (const std::string_view rule : text::splitNonEmpty(expected, '\n'))
      wanted.append("block /ads").append(rule).append("\n");
    EXPECT_EQ(described("/ads$" + std::string(options)), wanted) << options;
  }
  EXPECT_EQ(described("/ads$"), "skipped 1\n");
  for (const auto options : text::splitNonEmpty(
           "3p ~first-party script,~1p ~match-case ~important object popup script,popup csp=script "
           "redirect=a document doc,script ~document domain=a.test|~b domain=a.test|~b.test "
           "domain=~b|a.test domain=~a.test|b,font domain=a.* domain= domain domain=| "
           "domain==a.test ~domain=a.test font,= ~ ~~image 1 ,font font: \xC3\xA9 imagery "
           "averyveryveryverylongname",
           ' '))
    EXPECT_EQ(described("/ads$" + std::string(options)), "skipped 1\n") << options;
}

TEST(NetworkFilter, JudgesHosts) {
  const std::pair<const char*, const char*> cases[] = {
      {"a.test", "*a.test"},
      {"A-1.TEST", "*a-1.test"},
      {"a..test", "*a..test"},
      {".a.test", ""},
      {"a.test.", ""},
      {"test", ""},
      {"a_b.test", ""},
      {"a b.test", ""},
      {"m\xC3\xBCnchen.test", ""},
      {"\xE2\x84\xAA.test", "*k.test"},  // the sign for kelvin
  };
  for (const auto& [host, entry] : cases) {
    const std::string wanted =
        *entry == 0 ? "skipped 1\n" : "hide .x if " + std::string(entry) + "\n";
    EXPECT_EQ(described(std::string(host) + "##.x"), wanted) << host;
  }
}

TEST(NetworkFilter, TakesOnlyLimitedRulesForEveryAddress) {
  EXPECT_EQ(described("$script"), "skipped 1\n");
  EXPECT_EQ(described("*$third-party"), "skipped 1\n");
  EXPECT_EQ(described("$script,domain=a.test"), "block .* if *a.test [script]\n");
  EXPECT_EQ(described("*$script,domain=~a.test"), "block .* unless *a.test [script]\n");
}

TEST(NetworkFilter, ReadsExceptions) {
  const std::pair<const char*, const char*> cases[] = {
      {"@@||a.test^$script", "allow ^[^:]+://+([^:/]+\\.)?a\\.test[/:?=&] [script]\n"},
      {"@@abcd", "allow abcd [*]\nallow abcd frame\n"},
      {"@@@@abcd", "allow @@abcd [*]\nallow @@abcd frame\n"},
      // A site as a whole, whatever else is said.
      {"@@||A.test^$document", "allow .* if *a.test\n"},
      {"@@||a.test^|$doc", "allow .* if *a.test\n"},
      {"@@||a.test/$document,script,match-case,domain=b.test", "allow .* if *a.test\n"},
      {"@@||a.test$document", "allow .* if *a.test\n"},
  };
  for (const auto& [line, expected] : cases) EXPECT_EQ(described(line), expected) << line;
  for (const char* line : {"@@", "@@||a.test^$document,popup", "@@||a.test^/$document",
                           "@@||a.test/x$document", "@@||a.test|$document", "@@||banner^$document",
                           "@@|a.test^$document", "@@||$document", "||a.test^$document"})
    EXPECT_EQ(described(line), "skipped 1\n") << line;
}

}  // namespace
}  // namespace orvel
