// What looks at an address: routes, pins, tracking parameters, completion and a site's name.

#include <gtest/gtest.h>

#include "BrowserCore/Addresses/InlineCompletion.h"
#include "BrowserCore/Addresses/LinkRoute.h"
#include "BrowserCore/Addresses/PinnedAddress.h"
#include "BrowserCore/Addresses/SiteName.h"
#include "BrowserCore/Addresses/TrackingParameters.h"

namespace orvel {
namespace {

struct Verdict {
  const char* given;
  const char* url;
  bool expected;
};

TEST(LinkRoute, MatchesASiteItsSubdomainsAndWhatLiesBelowAPath) {
  const Verdict cases[] = {
      {"example.com", "https://example.com/any?q", true},
      {" EXAMPLE.com\t", "http://www.Example.com", true},
      {"https://www.example.com/", "ftp://example.com", true},
      {"example.com", "https://www.docs.example.com", true},
      {"example.com", "https://badexample.com", false},
      {"docs.example.com", "https://example.com", false},
      {"bücher.de", "https://BÜCHER.de", true},
      {"example.com/a/", "https://example.com/A", true},
      {"example.com/a/", "https://example.com/a/b?c", true},
      {"example.com/a/", "https://example.com/ab", false},
      {"example.com/ü b", "https://example.com/%C3%9C%20b/", true},
      {"example.com?q", "https://example.com?q", false},
      {"example.com:80", "https://example.com:80", false},
      {"", "https://example.com", false},
      {"tmp", "file:///tmp", false},
  };
  for (const auto& [pattern, url, expected] : cases)
    EXPECT_EQ(LinkRoute{.pattern = pattern}.matches(URL::parse(url).value()), expected)
        << pattern << " and " << url;
}

TEST(LinkRoute, TheFirstMatchInTheListWins) {
  const std::vector<LinkRoute> routes = {
      {.pattern = "other.com"}, {.pattern = "example.com/a"}, {.pattern = "example.com"}};
  EXPECT_EQ(firstMatching(routes, *URL::parse("https://example.com/a/b")), &routes[1]);
  EXPECT_EQ(firstMatching(routes, *URL::parse("https://example.org")), nullptr);
}

TEST(PinnedAddress, OnlyAnotherPageOrQueryHasWandered) {
  const Verdict cases[] = {
      {"https://a.test", "https://a.test///#top", false},
      {"https://a.test/#one", "https://a.test#two#three", false},
      {"https://a.test/?q", "https://a.test/", true},
      {"https://a.test/", "http://a.test/", true},
      {"https://a.test/a/", "https://a.test/b/", true},
      {"none", "https://a.test", false},
      {"https://a.test", "none", false},
  };
  for (const auto& [pinned, shown, expected] : cases)
    EXPECT_EQ(hasWanderedFromPin(URL::parse(pinned), URL::parse(shown)), expected)
        << pinned << " and " << shown;
}

std::string stripped(std::string_view url) {
  const auto result = TrackingParameters::stripped(URL::parse(url).value());
  return result ? result->text() : "nothing";
}

TEST(TrackingParameters, LeaveAddressesAndNothingElse) {
  const std::pair<const char*, const char*> cases[] = {
      {"https://a.test/?utm_source=x&hsa_=y#f?utm_x", "https://a.test/#f?utm_x"},
      {"http://A.test?x=%zz|&GCLID&Y=a=b&_hsmi=", "http://A.test?x=%zz|&Y=a=b"},
      {"https://a.test/?&fbclid=1", "https://a.test/?"},
      {"HTTPS://a.test/?Utm_Anything-at-all-however-long=1&k=1", "HTTPS://a.test/?k=1"},
      {"https://a.test/?fbclid=1?b=2", "https://a.test/"},
      // Only on their own sites and below them.
      {"https://www.youtube.com/watch?v=1&si=2", "https://www.youtube.com/watch?v=1"},
      {"https://YOUTU.BE/1?SI=2", "https://YOUTU.BE/1"},
      {"https://open.spotify.com/track?si=2", "https://open.spotify.com/track"},
      {"https://spotify.com/track?si=2", "nothing"},
      {"https://www.instagram.com/p?igsh=2&si=1", "https://www.instagram.com/p?si=1"},
      {"https://x.com/a?s=20&t=1&u=2", "https://x.com/a?u=2"},
      {"https://mobile.twitter.com/a?T=1", "https://mobile.twitter.com/a"},
      {"https://netflix.com/a?s=20&t=1", "nothing"},
      // Nothing to remove.
      {"https://a.test/?a=fbclid&xfbclid=1&fbclidx=1&utm=1&%66bclid=1", "nothing"},
      {"https://a.test/#?fbclid=1", "nothing"},
      {"ftp://a.test/?fbclid=1", "nothing"},
  };
  for (const auto& [url, expected] : cases) EXPECT_EQ(stripped(url), expected) << url;
}

TEST(InlineCompletion, CompletesHostsAndWithASlashPaths) {
  struct Case {
    const char* typed;
    std::vector<const char*> pages;
    const char* expected;
  };
  const Case cases[] = {
      {"exa", {"https://www.example.com/some/page"}, "example.com"},
      {"Exa", {"https://www.Example.com/"}, "Example.com"},
      {"www.exa", {"https://www.example.com/"}, "www.example.com"},
      {"exa",
       {"about:blank", "https://exb.com", "https://exact.org", "https://exa.b"},
       "exact.org"},
      {"example.com/d", {"https://e.com/", "https://www.example.com/docs/"}, "example.com/docs"},
      {"example.com/d", {"https://example.com/Docs"}, "none"},
      {"example.com/D", {"https://example.com/docs"}, "example.com/Docs"},
      {"www.example.com/d", {"https://www.example.com/docs?q"}, "www.example.com/docs"},
      {"e", {"https://example.com"}, "none"},
      {"exact.org/a", {"https://exact.org/b/", "https://exact.com/long"}, "none"},
      {"example.co", {"https://example.com/", "https://example.com.br/"}, "example.com"},
      {"mü", {"https://MÜNCHEN.de"}, "münchen.de"},
      // A text that names a page exactly is left alone.
      {"example.com", {"https://example.com.br/", "https://example.com/"}, "none"},
      {"example.com/", {"https://example.com/docs", "https://example.com"}, "none"},
      {"example.com/docs/", {"https://www.example.com/docs", "https://example.com/docs/a"}, "none"},
      {"www.example.com", {"https://www.example.com"}, "none"},
  };
  for (const auto& [typed, pages, expected] : cases) {
    std::vector<URL> urls;
    for (const char* page : pages) urls.push_back(URL::parse(page).value());
    EXPECT_EQ(InlineCompletion::complete(typed, urls).value_or("none"), expected) << typed;
  }
}

TEST(SiteName, IsTheLastPieceOfATitleOrElseTheHost) {
  const std::string thirty = "123456789012345678901234567890";
  const std::pair<std::string, std::string> cases[] = {
      {"Home – Example – Site", "Site"},
      {"A - B | C", "C"},
      {"A - B | C - D", "C - D"},
      {"A · B — C", "C"},
      {"A - e\u0301" + thirty.substr(1), "e\u0301" + thirty.substr(1)},
      {"A - 1" + thirty, "a.test"},
      {"A-B", "a.test"},
  };
  for (const auto& [title, expected] : cases)
    EXPECT_EQ(siteName(title, URL::parse("https://www.a.test/x")), expected) << title;
  EXPECT_EQ(siteName("Title", std::nullopt), "Pinned tab");
}

}  // namespace
}  // namespace orvel
