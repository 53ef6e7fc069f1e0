#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BrowserCore/Addresses/SearchEngine.h"
#include "BrowserCore/Addresses/SearchShortcut.h"

namespace orvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SearchEngine, AppendsTheEncodedQueryToItsEndpoints) {
  for (const SearchEngine engine : SearchEngine::allCases) {
    EXPECT_EQ(SearchEngine::parse(engine.id()), engine);
    EXPECT_TRUE(engine.searchURL(" a&b+ü").value().text().ends_with("=%20a%26b%2B%C3%BC"));
    const auto url = engine.suggestionsURL("1=2#");
    EXPECT_EQ(url.has_value(), engine.offersSuggestions()) << engine.id();
    EXPECT_TRUE(!url || url->text().ends_with("=1%3D2%23")) << engine.id();
    EXPECT_EQ(engine.searchURL("\xc3"), std::nullopt);
  }
  EXPECT_FALSE(SearchEngine(SearchEngine::ecosia).offersSuggestions());
  EXPECT_EQ(SearchEngine::parse("Google"), std::nullopt);
}

TEST(SearchEngine, ReadsTheSecondElementOfAReply) {
  EXPECT_THAT(SearchEngine::suggestions(R"(["q",["a","b"]])"), ElementsAre("a", "b"));
  EXPECT_THAT(SearchEngine::suggestions(R"([["x",{"y":[1]}],["ü",""],{"z":["c"]},["d"],null])"),
              ElementsAre("ü", ""));
  for (const char* reply :
       {"", "x", R"(["q"])", "{}", R"({"a":["b"]})", R"(["q",5])", R"(["q",{"a":["b"]}])",
        R"(["q","a"])", R"(["q",["a",5]])", R"(["q",["a",["b"]]])", R"(["q",["a",{}]])",
        R"(["q",["a"])", R"(["q",["a"]]x)", R"("q")", "[]", "null", "[\"q\",[\"\xff\"]]",
        R"(["q",null,["a"]])"})
    EXPECT_THAT(SearchEngine::suggestions(reply), IsEmpty()) << reply;
  EXPECT_THAT(SearchEngine::suggestions(std::string(10'000'000, '[')), IsEmpty());
}

SearchShortcut shortcut(std::string keyword, std::string urlTemplate) {
  return {.keyword = std::move(keyword), .name = "n", .urlTemplate = std::move(urlTemplate)};
}

std::string matched(std::string_view text, std::span<const SearchShortcut> shortcuts) {
  const auto match = SearchShortcut::match(text, shortcuts);
  return match ? match->shortcut.urlTemplate + "|" + match->query : "none";
}

TEST(SearchShortcut, MatchesAKeywordAndAQuery) {
  const std::vector<SearchShortcut> shortcuts = {
      shortcut("YT", "no place"), shortcut(" yt\t", "1%s"), shortcut("yt", "2%s"),
      shortcut("", "3%s"),        shortcut("ÄB", "4%s"),    shortcut("a b", "5%s")};
  const std::pair<const char*, const char*> cases[] = {
      {"yt lofi", "1%s|lofi"}, {"Yt lofi", "1%s|lofi"}, {" yt  two  words\t", "1%s|two  words"},
      {"äb x", "4%s|x"},       {"yt \nx", "1%s|\nx"},
  };
  for (const auto& [typed, expected] : cases)
    EXPECT_EQ(matched(typed, shortcuts), expected) << typed;
  for (const char* typed : {"yt", "yt   ", "yt\tlofi", "ytx lofi", "a b c", "", "\nyt x"})
    EXPECT_EQ(matched(typed, shortcuts), "none") << typed;
}

TEST(SearchShortcut, BuildsAddresses) {
  const auto address = [](std::string urlTemplate, std::string_view query) {
    const auto url = shortcut("k", std::move(urlTemplate)).url(query);
    return url ? url->text() : "none";
  };
  EXPECT_EQ(address("site.example/?q=%s", "a&b"), "https://site.example/?q=a%26b");
  EXPECT_EQ(address(" http://x/%s/%s%s\t", "two  w"), "http://x/two%20%20w/two%20%20wtwo%20%20w");
  EXPECT_EQ(address("x://%s", ""), "x://");
  EXPECT_EQ(address("a b %s", "q"), "none");
  EXPECT_EQ(address("x/%s", "\xff"), "none");
  std::string hostile;
  for (int i = 0; i < 100'000; ++i) hostile += "%s";
  EXPECT_EQ(address(hostile, std::string(100'000, 'a')), "none");
}

}  // namespace
}  // namespace orvel
