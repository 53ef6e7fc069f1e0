#include "BrowserCore/LinkRoute.h"

#include <gtest/gtest.h>

namespace orvel {
namespace {

bool matches(std::string pattern, std::string_view url) {
  return LinkRoute{.pattern = std::move(pattern)}.matches(URL::parse(url).value());
}

TEST(LinkRoute, MatchesASiteItsSubdomainsAndWhatLiesBelowAPath) {
  struct Case {
    const char* pattern;
    const char* url;
    bool expected;
  };
  const Case cases[] = {
      {"example.com", "https://example.com/any?q", true},
      {" EXAMPLE.com\t", "http://www.Example.com", true},
      {"https://www.example.com/", "ftp://example.com", true},
      {"a://example.com/b://c", "https://example.com/b://c", true},
      {"/example.com", "https://example.com", true},
      {"example.com", "https://docs.example.com", true},
      {"example.com", "https://www.docs.example.com", true},
      {"example.com", "https://badexample.com", false},
      {"docs.example.com", "https://example.com", false},
      {"example.com", "https://ex%61mple.com", true},
      {"bücher.de", "https://BÜCHER.de", true},
      {"example.com/a/", "https://example.com/A", true},
      {"example.com/a/", "https://example.com/a/b?c", true},
      {"example.com/a/", "https://example.com/ab", false},
      {"example.com/a/", "https://example.com/", false},
      {"example.com//a//b", "https://example.com/a//b/c", true},
      {"example.com/ü b", "https://example.com/%C3%9C%20b/", true},
      {"example.com?q", "https://example.com?q", false},
      {"example.com:80", "https://example.com:80", false},
      {"", "https://example.com", false},
      {"https://", "https://example.com", false},
      {"www.", "https://example.com", false},
      {"/", "https://example.com", false},
      {"example.com", "about:blank", false},
      {"tmp", "file:///tmp", false},
  };
  for (const auto& [pattern, url, expected] : cases)
    EXPECT_EQ(matches(pattern, url), expected) << pattern << " and " << url;
}

TEST(LinkRoute, TheFirstMatchInTheListWins) {
  const std::vector<LinkRoute> routes = {
      {.pattern = "other.com"}, {.pattern = "example.com/a"}, {.pattern = "example.com"}};
  const auto first = [&routes](std::string_view url) {
    return firstMatching(routes, URL::parse(url).value());
  };
  EXPECT_EQ(first("https://example.com/a/b"), &routes[1]);
  EXPECT_EQ(first("https://example.com/b"), &routes[2]);
  EXPECT_EQ(first("https://example.org"), nullptr);
}

}  // namespace
}  // namespace orvel
