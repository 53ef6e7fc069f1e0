#include "BrowserCore/URLInput.h"

#include <gtest/gtest.h>

namespace orvel {
namespace {

TEST(ExplicitURL, TellsAddressesFromSearches) {
  const std::pair<std::string, const char*> cases[] = {
      {"example.com", "https://example.com"},
      {"Example.COM/Path?q=1", "https://Example.COM/Path?q=1"},
      {"  example.com\n", "https://example.com"},
      {"example.com.", "https://example.com."},
      {"example.com:8080/a", "https://example.com:8080/a"},
      {"example.com:", "https://example.com:"},
      {"example.com/a|b?c[]=%zz", "https://example.com/a|b?c[]=%zz"},
      {"user@example.com", "https://user@example.com"},
      {"localhost", "http://localhost"},
      {"LOCALHOST", "http://LOCALHOST"},
      {"localhost:3000/x", "http://localhost:3000/x"},
      {"192.168.0.1:8080", "http://192.168.0.1:8080"},
      {"999.999.999.999", "http://999.999.999.999"},
      {"١٢.٣.٤.٥", "http://١٢.٣.٤.٥"},
      {"münchen.de/straße", "https://münchen.de/straße"},
      {"пример.рф", "https://пример.рф"},
      {"உதாரணம்.சிங்கப்பூர்", "https://உதாரணம்.சிங்கப்பூர்"},
      {"HTTPS://example.com", "HTTPS://example.com"},
      {"http://me:pw@a-b_c.test:80/", "http://me:pw@a-b_c.test:80/"},
      {"http://[::1]:3000/", "http://[::1]:3000/"},
      {"http://intranet", "http://intranet"},
      {"file:///tmp/a", "file:///tmp/a"},
      {"about:blank", "about:blank"},
      {"data:text/html,<b>|</b>", "data:text/html,<b>|</b>"},
  };
  for (const auto& [typed, expected] : cases) {
    const auto url = URLInput::explicitURL(typed);
    EXPECT_EQ(url ? url->text() : "a search", expected) << typed;
  }
}

TEST(ExplicitURL, LeavesEverythingElseToTheSearch) {
  const auto isSearch = [](std::initializer_list<const char*> texts) {
    for (const char* typed : texts) EXPECT_EQ(URLInput::explicitURL(typed), std::nullopt) << typed;
  };
  isSearch({"", " \n", "hello", "1.2.3", "1.2.3.4.5", "1.2.3.4444", "1..2.3", "example.c",
            "example.123", "example.co2", "two words.com", "two\twords.com", "two\u00a0words.com",
            "foo:bar"});
  isSearch({"mailto:a.b", "user:pw@example.com", "/path", "//", ":", "///example.com",
            "example.com:port", "example.com:99999", "example.com:80:80", "localhost:x",
            "ex<ample.com", "ex%zzample.com", "ex\u202eample.com"});
  isSearch({"a[b].com", "http:", "https://", "http:///path", "http://:80", "http://exa|mple.com",
            "http://[::1", "http://[1.2.3.4]", "http://[::1]x/", "http://[fe80::1%25eth0]/",
            "http://a:b:c/", "http://a\\b/", "\xff.com", "a.b\u0301c\u0301.\u0301"});
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
      {"https://WWW.example.com/", "WWW.example.com"},
      {"https://a%62c.test/", "abc.test"},
      {"https://a%20b.test/", "a%20b.test"},
      {"http://[::1]:80/", "[::1]"},
      {"file:///tmp/a%20b.html", "a b.html"},
      {"file:///tmp/folder/", "folder"},
      {"file:///", "/"},
      {"FILE:a", "a"},
      {"about:blank", "about:blank"},
      {"https:///path", "https:///path"},
  };
  for (const auto& [url, expected] : cases)
    EXPECT_EQ(displayHost(URL::parse(url).value()), expected) << url;
}

TEST(SiteKey, KeepsTheLastTwoLabels) {
  const std::pair<const char*, const char*> cases[] = {
      {"https://www.Example.com/", "example.com"},
      {"https://a.example.co.uk", "co.uk"},
      {"http://localhost:3000", "localhost"},
      {"http://127.0.0.1", "127.0.0.1"},
      {"http://[2001:DB8::1]:80", "[2001:db8::1]"},
      {"https://a.example.com.", "example.com"},
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
