#include "BrowserCore/Addresses/URL.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "BrowserCore/Addresses/URLInput.h"

namespace orvel {
namespace {

// The parts of an address in order, absent ones as "-".
std::string parts(std::string_view text) {
  const URL url = URL::parse(text).value();
  const auto part = [](const auto& value) { return value ? fmt::format("{}", *value) : "-"; };
  return fmt::format("{} {} {} {} {} {} {} {}", url.scheme(), part(url.authority()),
                     part(url.userInfo()), part(url.host()), part(url.port()), url.path(),
                     part(url.query()), part(url.fragment()));
}

TEST(URL, SplitsAddressesAndTellsAbsentPartsFromEmptyOnes) {
  EXPECT_EQ(parts("https://me:pw@Example.com:8080/a/b?q=a|b&c[]=1#top?x"),
            "https me:pw@Example.com:8080 me:pw Example.com 8080 /a/b q=a|b&c[]=1 top?x");
  EXPECT_EQ(parts("about:blank"), "about - - - - blank - -");
  EXPECT_EQ(parts("file:///tmp/a?#"), "file  - - - /tmp/a  ");
  EXPECT_EQ(parts("http://[::1]:3000/"), "http [::1]:3000 - [::1] 3000 / - -");
}

TEST(URL, AcceptsWhatEnginesReportAndRefusesBlanksAndControls) {
  for (const char* text : {"https://a.test/?a[]=1&b={x}", "https://a.test/%zz?100%",
                           "https://münchen.test/straße", "x:"})
    EXPECT_TRUE(URL::parse(text)) << text;
  for (const char* text : {"", "no scheme", "//host/path", "1a:b", ":x", "https://a b/", "a:\tb",
                           "a:\x7f", "a:\xff", "-a:b"})
    EXPECT_FALSE(URL::parse(text)) << text;
}

TEST(URL, ResolvesReferences) {
  const URL base = *URL::parse("http://a/b/c/d;p?q");
  const std::pair<const char*, const char*> cases[] = {
      {"g:h", "g:h"},
      {"/g", "http://a/g"},
      {"//g", "http://g"},
      {"?y", "http://a/b/c/d;p?y"},
      {"#s", "http://a/b/c/d;p?q#s"},
      {"..", "http://a/b/"},
      {"../../../../g", "http://a/g"},
      {"..g", "http://a/b/c/..g"},
      {"g/./h", "http://a/b/c/g/h"},
      {"g?y/../x#s", "http://a/b/c/g?y/../x#s"},
  };
  for (const auto& [reference, expected] : cases)
    EXPECT_EQ(base.resolve(reference).value().text(), expected) << reference;
  EXPECT_EQ(URL::parse("http://a")->resolve("g").value().text(), "http://a/g");
}

TEST(ExplicitURL, TellsAddressesFromSearches) {
  const std::pair<std::string, const char*> cases[] = {
      {"Example.COM/Path?q=1", "https://Example.COM/Path?q=1"},
      {"  example.com\n", "https://example.com"},
      {"example.com.", "https://example.com."},
      {"example.com/a|b?c[]=%zz", "https://example.com/a|b?c[]=%zz"},
      {"user@example.com", "https://user@example.com"},
      {"LOCALHOST", "http://LOCALHOST"},
      {"localhost:3000/x", "http://localhost:3000/x"},
      {"999.999.999.999", "http://999.999.999.999"},
      {"١٢.٣.٤.٥", "http://١٢.٣.٤.٥"},
      {"münchen.de/straße", "https://münchen.de/straße"},
      {"உதாரணம்.சிங்கப்பூர்", "https://உதாரணம்.சிங்கப்பூர்"},
      {"http://me:pw@a-b_c.test:80/", "http://me:pw@a-b_c.test:80/"},
      {"http://intranet", "http://intranet"},
      {"file:///tmp/a", "file:///tmp/a"},
      {"data:text/html,<b>|</b>", "data:text/html,<b>|</b>"},
  };
  for (const auto& [typed, expected] : cases) {
    const auto url = URLInput::explicitURL(typed);
    EXPECT_EQ(url ? url->text() : "a search", expected) << typed;
  }
  for (const char* search :
       {"", "hello", "1.2.3.4.5", "1.2.3.4444", "1..2.3", "example.c", "example.co2",
        "two words.com", "two\u00a0words.com", "foo:bar", "mailto:a.b", "/path", ":", "\xff.com",
        "http:", "https://", "localhost:x", "a[b].com", "http://:80"})
    EXPECT_EQ(URLInput::explicitURL(search), std::nullopt) << search;
  for (const char* hostile :
       {"user:pw@example.com", "///example.com", "example.com:port", "example.com:99999",
        "example.com:80:80", "ex<ample.com", "ex%zzample.com", "ex\u202eample.com", "http:///path",
        "http://exa|mple.com", "http://[::1", "http://[1.2.3.4]", "http://[::1]x/",
        "http://[fe80::1%25eth0]/", "http://a:b:c/", "http://a\\b/", "a.b\u0301c\u0301.\u0301"})
    EXPECT_EQ(URLInput::explicitURL(hostile), std::nullopt) << hostile;
}

TEST(ExplicitURL, ReturnsPromptlyForHugeTexts) {
  for (const char* piece : {"a.", "/", "1.", "ü", "%41", "http://"}) {
    std::string typed;
    while (typed.size() < 10'000'000) typed += piece;
    (void)URLInput::explicitURL(typed);
    (void)URLInput::explicitURL("http://" + typed);
  }
}

TEST(DisplayHost, ShortensAddresses) {
  const std::pair<const char*, const char*> cases[] = {
      {"https://www.example.com/a", "example.com"},
      {"https://a%62c.test/", "abc.test"},
      {"https://a%20b.test/", "a%20b.test"},
      {"http://[::1]:80/", "[::1]"},
      {"file:///tmp/a%20b.html", "a b.html"},
      {"file:///tmp/folder/", "folder"},
      {"file:///", "/"},
      {"about:blank", "about:blank"},
  };
  for (const auto& [url, expected] : cases)
    EXPECT_EQ(displayHost(URL::parse(url).value()), expected) << url;
}

TEST(SiteKey, KeepsTheLastTwoLabels) {
  const std::pair<const char*, const char*> cases[] = {
      {"https://www.Example.com/", "example.com"},
      {"https://a.example.co.uk", "co.uk"},
      {"http://localhost:3000", "localhost"},
      {"http://[2001:DB8::1]:80", "[2001:db8::1]"},
      {"https://a.BÜCHER.de", "bücher.de"},
      {"https://a..b..c..", "b.c"},
      {"https://[", "["},
  };
  for (const auto& [url, expected] : cases)
    EXPECT_EQ(siteKey(URL::parse(url).value()), expected) << url;
  EXPECT_EQ(siteKey(URL::parse("about:blank").value()), std::nullopt);
  EXPECT_EQ(siteKey(URL::parse("file:///a.b.c").value()), std::nullopt);
}

}  // namespace
}  // namespace orvel
