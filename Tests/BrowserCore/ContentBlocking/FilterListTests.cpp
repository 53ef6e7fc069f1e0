#include "BrowserCore/ContentBlocking/FilterListConverter.h"

#include <gtest/gtest.h>

#include "BrowserCore/Text/Text.h"

namespace orvel {
namespace {

using FilterListConverter::convert;

// A rule in short, for tables: "block /ads [script,image] 3p", "allow .* if *a.test",
// "hide .ad unless *a.test", "block /ads frame". The default types are "[*]".
std::string describe(const ContentRule& rule) {
  static const char* const actions[] = {"block", "hide", "allow"};
  static const char* const names[] = {"document", "font",   "image",       "media",
                                      "raw",      "script", "style-sheet", "svg"};
  const ContentRule::Trigger& trigger = rule.trigger;
  std::string text = actions[static_cast<int>(rule.action.type)];
  const bool hides = rule.action.type == ContentRule::ActionType::cssDisplayNone;
  text += " " + std::string(hides ? rule.action.selector : trigger.urlFilter);
  if (hides != !rule.action.selector.empty() || (hides && trigger.urlFilter != ".*"))
    text += " (broken)";
  if (trigger.urlFilterIsCaseSensitive)
    text += *trigger.urlFilterIsCaseSensitive ? " case" : " (broken)";
  if (!trigger.ifDomain.isEmpty()) text += " if " + std::string(trigger.ifDomain.joined());
  if (!trigger.unlessDomain.isEmpty())
    text += " unless " + std::string(trigger.unlessDomain.joined());
  if (trigger.loadContext) {
    const bool isFrame = trigger.resourceType == ResourceTypes{ResourceType::document};
    text += isFrame ? " frame" : " (broken)";
  } else if (trigger.resourceType.bits() == 0xFE) {
    text += " [*]";
  } else if (!trigger.resourceType.isEmpty()) {
    text += " [";
    for (size_t i = 0; i < std::size(names); ++i)
      if (trigger.resourceType.contains(static_cast<ResourceType>(i)))
        text.append(text.back() == '[' ? "" : ",").append(names[i]);
    text += "]";
  }
  if (trigger.loadType)
    text += *trigger.loadType == ContentRule::LoadType::firstParty ? " 1p" : " 3p";
  return text;
}

// What a list converts to, one rule a line, and then the number skipped if it isn't 0.
std::string described(std::string_view list, FilterListConverter::Options options = {}) {
  const auto output = convert(list, options);
  std::string text;
  for (const ContentRule& rule : output.rules) text += describe(rule) + "\n";
  if (output.skipped != 0) text += "skipped " + std::to_string(output.skipped) + "\n";
  return text;
}

// Lists

std::string repeated(std::string_view text, size_t count) {
  std::string result;
  result.reserve(text.size() * count);
  for (size_t i = 0; i < count; ++i) result += text;
  return result;
}

TEST(FilterListConverter, SplitsLinesAndTrimsBlanks) {
  for (const char* const end :
       {"\n", "\r\n", "\r", "\v", "\f", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9", "\n\n \n"})
    EXPECT_EQ(described(std::string("##.a") + end + "##.b" + end), "hide .a\nhide .b\n") << end;
  // Bytes that begin like a line end and aren't one, at every place of a word.
  for (size_t i = 0; i < 9; ++i)
    for (const char* const other :
         {"\xC2\x86", "\xE2\x80\xA7", "\xE2", "\xC2", "\t", "\x0E", "\x09"})
      EXPECT_EQ(
          convert(std::string(i, 'a') + other + "abcdefgh\n##.x").rules.back().action.selector,
          ".x");
  for (const char* const blank : {" ", "\t", "\xC2\xA0", "\xE1\x9A\x80", "\xE2\x80\x80",
                                  "\xE2\x80\x8A", "\xE2\x80\xAF", "\xE2\x81\x9F", "\xE3\x80\x80"})
    EXPECT_EQ(described(repeated(blank, 2) + "##.a" + repeated(blank, 2)), "hide .a\n") << blank;
  for (const char* const other : {"\xE2\x80\x8B", "\xEF\xBB\xBF", "\x01", "\x1F"})
    EXPECT_NE(described(std::string(other) + "##.a"), "hide .a\n") << other;
  EXPECT_EQ(described(""), "");
  EXPECT_EQ(described(" \n! comment\n[Adblock Plus 2.0]\n  ! also\n"), "");
}

TEST(FilterListConverter, CapsBlockingBeforeHidingAndNeverExceptions) {
  std::string list;
  for (int i = 10; i < 30; ++i) list += "/block" + std::to_string(i) + "$script\n";
  for (int i = 0; i < 5; ++i) list += "@@/allow" + std::to_string(i) + "$image\n";
  list += "##.x\n##.y\na.test##.z";
  const auto kinds = [&](int64_t maxRules) {
    const auto output = convert(list, {.maxRules = maxRules});
    std::string text;
    for (const ContentRule& rule : output.rules) text += describe(rule)[0];
    return text + " " + std::to_string(output.skipped);
  };
  EXPECT_EQ(kinds(10), "bbbbbaaaaa 18");
  EXPECT_EQ(kinds(-1), "aaaaa 23");
  EXPECT_EQ(kinds(27), std::string(20, 'b') + "hhaaaaa 1");
  EXPECT_EQ(describe(convert(list, {.maxRules = 6}).rules[0]), "block /block10 [script]");
  // A filter's two rules are not kept together at all costs.
  EXPECT_EQ(described("abcd\nefgh", {.maxRules = 3}),
            "block abcd [*]\nblock abcd frame\nblock efgh [*]\nskipped 1\n");
}

TEST(FilterListConverter, CapsRulesForSomeSites) {
  std::string list;
  for (int i = 0; i < 60'010; ++i) list += "s" + std::to_string(i) + ".test##.x\n";
  list += "##.generic";
  const auto output = convert(list);
  ASSERT_EQ(output.rules.size(), 60'001U);
  EXPECT_EQ(describe(output.rules.front()), "hide .generic");
  EXPECT_EQ(describe(output.rules.back()), "hide .x if *s59999.test");
  EXPECT_EQ(output.skipped, 10);
}

TEST(FilterListConverter, TakesHugeListsAndLines) {
  constexpr size_t size = 50'000'000;
  EXPECT_EQ(convert(repeated("a\n", size / 2)).skipped, static_cast<int64_t>(size / 2));
  EXPECT_EQ(convert(std::string(size, '^')).rules.size(), 2U);
  EXPECT_EQ(convert("##" + std::string(size, 'a')).skipped, 1);
  EXPECT_EQ(convert("abcd$" + repeated("script,", size / 7)).rules.size(), 1U);
  const auto sites = convert(repeated("a.b,", size / 4) + "##.x");
  EXPECT_EQ(sites.rules[0].trigger.ifDomain.joined().size(), size / 4 * 5 - 1);
}

// Lists that would make work of the product of their halves.
TEST(FilterListConverter, StaysLinearForHostileLists) {
  std::string sites;
  for (int i = 0; i < 50'000; ++i) sites += "s" + std::to_string(i) + ".test,";
  // One long list of sites against an equally long one of unrelated exceptions.
  std::string others = sites;
  for (char& c : others)
    if (c == 's') c = 'x';
  EXPECT_EQ(convert(sites + "##.x\n" + others + "#@#.x").rules.size(), 1U);
  // Subdomains of subdomains of an exception's site.
  const std::string deep = repeated("a.", 500'000) + "test";
  EXPECT_EQ(convert(deep + "##.x\nb." + deep + "," + others + "#@#.x").skipped, 1);
  // Each of very many rules repeats all exceptions, until that is too much.
  std::string merging = sites + "#@#.x\n";
  for (int i = 0; i < 1'000; ++i) merging += "~m" + std::to_string(i) + ".test##.x\n";
  const auto output = convert(merging);
  EXPECT_EQ(output.rules.size() + static_cast<size_t>(output.skipped), 1'000U);
  EXPECT_GT(output.rules.size(), 10U);
  EXPECT_LT(output.rules.size(), 200U);
}

// Filters of requests

constexpr std::string_view anchor = "^[^:]+://+([^:/]+\\.)?";

TEST(NetworkFilter, TranslatesPatterns) {
  const std::pair<std::string_view, std::string> cases[] = {
      {"||banner^", std::string(anchor) + "banner[/:?=&]"},
      {"||", std::string(anchor)},
      {"|", "^"},
      {"|||", std::string(anchor) + "$"},
      {"abc*|", "abc.*$"},
      {"*|", "$"},
      {"|*abc*", "^.*abc"},
      {"a+b.c?d&e=f", "a\\+b\\.c\\?d&e=f"},
      {"ab\"'<>;%~`cd\x01\x7F", "ab\"'<>;%~`cd\x01\x7F"},
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
      {"CSS", " [style-sheet]\n"},
      {"xmlhttprequest,xhr,websocket,ping,other", " [raw]\n"},
      {"~script,~stylesheet", " [font,image,media,raw,svg]\n frame\n"},
      {"~image,subdocument", " [font,media,raw,script,style-sheet,svg]\n frame\n"},
      {"frame", " frame\n"},
      {"~subdocument", " [*]\n"},
      {"subdocument,~subdocument", " frame\n"},
      {"image,subdocument", " [image]\n frame\n"},
      {"third-party", " [*] 3p\n frame 3p\n"},
      {"script,3p", " [script] 3p\n"},
      {"~3p,1p,script", " [script] 1p\n"},
      {"third-party,~third-party,font", " [font] 1p\n"},
      {"match-case,font", " case [font]\n"},
      {"important,~object,font", " [font]\n"},
      {"from=~a.test|~b.c.test,font", " unless *a.test,*b.c.test [font]\n"},
      {"domain=a.test,domain=b.test,font", " if *b.test [font]\n"},
      {"domain=||A.test|,font", " if *a.test [font]\n"},
      {"domain==a.test|b.test,font", " if *b.test [font]\n"},
      {"font,,=image,", " [font,image]\n"},
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
      {"a..test", "*a..test"},
      {".a.test", ""},
      {"a.test.", ""},
      {"a_b.test", ""},
      {"m\xC3\xBCnchen.test", ""},
      {"\xE2\x84\xAA.test", "*k.test"},  // the sign for kelvin
  };
  for (const auto& [host, entry] : cases) {
    const std::string wanted =
        *entry == 0 ? "skipped 1\n" : "hide .x if " + std::string(entry) + "\n";
    EXPECT_EQ(described(std::string(host) + "##.x"), wanted) << host;
  }
}

TEST(NetworkFilter, ReadsExceptionsAndLimitedRulesForEveryAddress) {
  const std::pair<const char*, const char*> cases[] = {
      {"@@||a.test^$script", "allow ^[^:]+://+([^:/]+\\.)?a\\.test[/:?=&] [script]\n"},
      {"@@abcd", "allow abcd [*]\nallow abcd frame\n"},
      {"@@@@abcd", "allow @@abcd [*]\nallow @@abcd frame\n"},
      // A site as a whole, whatever else is said.
      {"@@||A.test^$document", "allow .* if *a.test\n"},
      {"@@||a.test/$document,script,match-case,domain=b.test", "allow .* if *a.test\n"},
      {"$script,domain=a.test", "block .* if *a.test [script]\n"},
      {"*$script,domain=~a.test", "block .* unless *a.test [script]\n"},
  };
  for (const auto& [line, expected] : cases) EXPECT_EQ(described(line), expected) << line;
  for (const char* line :
       {"@@", "@@||a.test^$document,popup", "@@||a.test^/$document", "@@||a.test/x$document",
        "@@||a.test|$document", "@@||banner^$document", "@@|a.test^$document", "@@||$document",
        "||a.test^$document", "$script", "*$third-party"})
    EXPECT_EQ(described(line), "skipped 1\n") << line;
}

// Filters that hide

TEST(CosmeticFilter, TakesTheMarkerFromTheFirstNumberSign) {
  const std::pair<const char*, const char*> cases[] = {
      {"###x", "hide #x\n"},
      {"a.test,B.test##.x##y", "hide .x##y if *a.test,*b.test\n"},
      {",##.x", "hide .x\n"},
      {"a.test,bad##.x", "hide .x if *a.test\n"},
      {"!a.test##.x", ""},
      {"[a##.x", ""},
      {"page#top##.x", "block page#top##\\.x [*]\nblock page#top##\\.x frame\n"},
  };
  for (const auto& [line, expected] : cases) EXPECT_EQ(described(line), expected) << line;
  for (const char* line :
       {"bad##.x", "~bad,a.test##.x", "a.test,~b.test##.x", "#@#.x", "~a.test#@#.x", "a.test#?#.x",
        "a.test#$#.x", "a.test#%#x", "a.test#@?#.x", "a.test#@$#.x", "a.test#@%#x"})
    EXPECT_EQ(described(line), "skipped 1\n") << line;
  // Without hiding rules the markers that nothing is made of are counted alone.
  EXPECT_EQ(described("##.x\n##::bad\na.test#@#.x\n#@#.y\na.test#?#.z", {.includeCosmetic = false}),
            "skipped 1\n");
}

TEST(CosmeticFilter, TakesSelectorsThatTheEngineReads) {
  const std::string longest(3999, 'a');
  for (const std::string& selector : std::initializer_list<std::string>{
           ".a > b ~ c + d", "a:not(b:has(c:is(d, e:where(f))))",
           ":root:empty:first-child:last-child:only-child",
           "a:nth-child(2n + 1):nth-last-child(1):nth-of-type(1):nth-last-of-type(2)",
           "a:first-of-type:last-of-type:only-of-type", "[a:b]", "a[href=\"x:y(]\"]", "a[b='\"::']",
           "[a=\"'\"]", longest})
    EXPECT_EQ(described("##" + selector), "hide " + selector + "\n");
  const auto isSkipped = [](const std::string& selector) {
    EXPECT_EQ(described("##" + selector), "skipped 1\n") << selector;
  };
  isSkipped("");
  isSkipped(longest + "a");
  for (const char* foreign :
       {"+js(x)", "^script", "a::before", "a:hover", "a:", "a:(b)", "a:Not(b)", "a:not-a(b)",
        "a:has-text(b)", "a\\:b", "a[b=\"\\\"\"]", "\xC3\xA9"})
    isSkipped(foreign);
  for (const char* unbalanced : {"[a", "a]", "a][", ":not(a", "a)", "a)(", "[a=\"b]", "[a='b\"]",
                                 "[a] b:hover", "a:not(:hover)", "([)]:hover"})
    isSkipped(unbalanced);
}

TEST(CosmeticFilter, JoinsTheSelectorsOfAScopeAndKeepsGenericOnesOnce) {
  EXPECT_EQ(described("##.b\n##.a\n##.b\n,##.a"), "hide .b\nhide .a\n");
  EXPECT_EQ(described("a.test##.1\nb.test,a.test##.2\na.test##.3\nA.TEST##.1\na.test,b.test##.4"),
            "hide .1, .3, .1 if *a.test\nhide .2 if *b.test,*a.test\n"
            "hide .4 if *a.test,*b.test\n");
  std::string list;
  std::string first;
  for (int i = 0; i < 51; ++i) {
    list += "~a.test##.s" + std::to_string(i) + "\n";
    if (i < 50) first += (i == 0 ? ".s" : ", .s") + std::to_string(i);
  }
  EXPECT_EQ(described(list), "hide " + first + " unless *a.test\nhide .s50 unless *a.test\n");
}

TEST(CosmeticFilter, HonoursExceptions) {
  const std::pair<const char*, const char*> cases[] = {
      // For all sites: a rule of its own, behind those without exceptions, sites sorted and once.
      {"##.x\n##.y\nb.test#@#.x\na.test,b.test#@#.x", "hide .y\nhide .x unless *a.test,*b.test\n"},
      // An exception may stand before the line, and one for all sites has no effect.
      {"a.test#@#.x\n##.x", "hide .x unless *a.test\n"},
      {"##.x\n#@#.x", "hide .x\nskipped 1\n"},
      // For some sites: dropped if related to the site, whichever is the parent.
      {"a.test##.x\na.test##.y\na.test#@#.x", "hide .y if *a.test\nskipped 1\n"},
      {"z.test,m.a.test,b.test##.x\nc.test,a.test#@#.x", "skipped 1\n"},
      {"a.test##.x\nba.test,a.test.b,-a.test#@#.x", "hide .x if *a.test\n"},
      {"ba.test##.x\na.test#@#.x", "hide .x if *ba.test\n"},
      {"a.test##.x\nm.a.test,b.a.test,a-a.test#@#.x", "skipped 1\n"},
      {"x.m.a.test##.x\na-m.a.test,a.test,m.a.test,b.test#@#.x", "skipped 1\n"},
      // With sites left out: both lists in one, in a rule before the scope's others.
      {"~b.test,~m.test##.y\n~b.test,~m.test##.x\nc.test,b.test,a.test#@#.x",
       "hide .x unless *a.test,*b.test,*c.test,*m.test\nhide .y unless *b.test,*m.test\n"},
  };
  for (const auto& [list, expected] : cases) EXPECT_EQ(described(list), expected) << list;
}

}  // namespace
}  // namespace orvel
