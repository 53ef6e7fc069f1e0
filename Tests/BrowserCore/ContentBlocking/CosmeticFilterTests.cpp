#include <gtest/gtest.h>

#include "Tests/BrowserCore/ContentBlocking/RuleTexts.h"

namespace orvel {
namespace {

TEST(CosmeticFilter, TakesTheMarkerFromTheFirstNumberSign) {
  const std::pair<const char*, const char*> cases[] = {
      {"##.x", "hide .x\n"},
      {"###x", "hide #x\n"},
      {"a.test,B.test##.x##y", "hide .x##y if *a.test,*b.test\n"},
      {"~a.test##.x", "hide .x unless *a.test\n"},
      {",##.x", "hide .x\n"},
      {"a.test,bad##.x", "hide .x if *a.test\n"},
      {"## .x", "hide  .x\n"},
      {"a.test#@#.x", ""},
      {"!a.test##.x", ""},
      {"[a##.x", ""},
      {"page#top##.x", "block page#top##\\.x [*]\nblock page#top##\\.x frame\n"},
  };
  for (const auto& [line, expected] : cases) EXPECT_EQ(described(line), expected) << line;
  for (const char* line :
       {"bad##.x", "~bad,a.test##.x", "a.test,~b.test##.x", "#@#.x", "~a.test#@#.x", "a.test#?#.x",
        "a.test#$#.x", "a.test#%#x", "a.test#@?#.x", "a.test#@$#.x", "a.test#@%#x"})
    EXPECT_EQ(described(line), "skipped 1\n") << line;
}

TEST(CosmeticFilter, WithoutHidingRulesCountsUnsupportedMarkersAlone) {
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

TEST(CosmeticFilter, KeepsGenericSelectorsOnceInOrder) {
  EXPECT_EQ(described("##.b\n##.a\n##.b\n,##.a"), "hide .b\nhide .a\n");
}

TEST(CosmeticFilter, JoinsTheSelectorsOfAScope) {
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
      {"a.test##.x\nm.a.test#@#.x", "skipped 1\n"},
      {"m.a.test##.x\na.test#@#.x", "skipped 1\n"},
      {"z.test,m.a.test,b.test##.x\nc.test,a.test#@#.x", "skipped 1\n"},
      {"ba.test##.x\na.test#@#.x", "hide .x if *ba.test\n"},
      {"a.test##.x\nba.test,a.test.b,-a.test#@#.x", "hide .x if *a.test\n"},
      {"a.test##.x\nm.a.test,b.a.test,a-a.test#@#.x", "skipped 1\n"},
      {"x.m.a.test##.x\na-m.a.test,a.test,m.a.test,b.test#@#.x", "skipped 1\n"},
      {"a.test##.x\na.test##.x\na.test#@#.x", "skipped 2\n"},
      // With sites left out: both lists in one, in a rule before the scope's others.
      {"~b.test,~m.test##.y\n~b.test,~m.test##.x\nc.test,b.test,a.test#@#.x",
       "hide .x unless *a.test,*b.test,*c.test,*m.test\nhide .y unless *b.test,*m.test\n"},
  };
  for (const auto& [list, expected] : cases) EXPECT_EQ(described(list), expected) << list;
}

}  // namespace
}  // namespace orvel
