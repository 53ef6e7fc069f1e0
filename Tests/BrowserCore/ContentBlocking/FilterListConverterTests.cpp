#include "BrowserCore/ContentBlocking/FilterListConverter.h"

#include <gtest/gtest.h>

#include "Tests/BrowserCore/ContentBlocking/RuleTexts.h"

namespace orvel {
namespace {

using FilterListConverter::convert;

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
  EXPECT_EQ(kinds(3), "aaaaa 23");
  EXPECT_EQ(kinds(0), "aaaaa 23");
  EXPECT_EQ(kinds(-1), "aaaaa 23");
  EXPECT_EQ(kinds(27), std::string(20, 'b') + "hhaaaaa 1");
  EXPECT_EQ(kinds(28), std::string(20, 'b') + "hhhaaaaa 0");
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

TEST(FilterListConverter, RulesOutliveTheTextAndShareIt) {
  FilterListConverter::Output copy;
  {
    const std::string list = "/ads^$domain=a.test\nb.test##.x\n/ads2$script,domain=a.test";
    copy = convert(list);
  }
  EXPECT_EQ(describe(copy.rules[3]), "hide .x if *b.test");
  EXPECT_EQ(copy.rules[0].trigger.urlFilter.data(), copy.rules[1].trigger.urlFilter.data());
  EXPECT_EQ(copy.rules[0].trigger.ifDomain.joined().data(),
            copy.rules[2].trigger.ifDomain.joined().data());
}

// A whole list with a bit of everything.
TEST(FilterListConverter, ConvertsAWholeList) {
  const std::string_view list =
      "[Adblock Plus 2.0]\r\n"
      "! Title: Everything\r\n"
      "||ads.test^$third-party\r\n"
      "/pixel.gif?$image,domain=shop.test|news.test\r\n"
      "/^https?:\\/\\/x/$script\r\n"
      "||cdn.test^$popup\r\n"
      "@@||ads.test/allowed.js$script,domain=~bad.test\r\n"
      "@@||help.test^$document\r\n"
      "##.ad-box\r\n"
      "##.sponsor\r\n"
      "###top:not(.x) > div[style=\"a:b\"]\r\n"
      "news.test,~sport.news.test##.teaser\r\n"
      "news.test,shop.test##.promo\r\n"
      "news.test,shop.test##.offer\r\n"
      "help.test#@#.sponsor\r\n"
      "news.test#?#div:has-text(Ad)\r\n"
      "~quiet.test##.banner\r\n"
      "loud.test#@#.banner";
  EXPECT_EQ(described(list),
            "block ^[^:]+://+([^:/]+\\.)?ads\\.test[/:?=&] [*] 3p\n"
            "block ^[^:]+://+([^:/]+\\.)?ads\\.test[/:?=&] frame 3p\n"
            "block /pixel\\.gif\\? if *shop.test,*news.test [image]\n"
            "hide .ad-box\nhide #top:not(.x) > div[style=\"a:b\"]\n"
            "hide .sponsor unless *help.test\nhide .promo, .offer if *news.test,*shop.test\n"
            "hide .banner unless *loud.test,*quiet.test\n"
            "allow ^[^:]+://+([^:/]+\\.)?ads\\.test/allowed\\.js unless *bad.test [script]\n"
            "allow .* if *help.test\nskipped 4\n");
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

}  // namespace
}  // namespace orvel
