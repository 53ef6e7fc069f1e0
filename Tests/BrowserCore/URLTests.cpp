#include "BrowserCore/URL.h"

#include <gtest/gtest.h>

namespace orvel {
namespace {

TEST(URL, SplitsAddressesIntoTheirParts) {
  const URL url = *URL::parse("https://me:pw@Example.com:8080/a/b?q=a|b&c[]=1#top?x");
  EXPECT_EQ(url.scheme(), "https");
  EXPECT_EQ(url.authority(), "me:pw@Example.com:8080");
  EXPECT_EQ(url.userInfo(), "me:pw");
  EXPECT_EQ(url.host(), "Example.com");
  EXPECT_EQ(url.port(), 8080);
  EXPECT_EQ(url.path(), "/a/b");
  EXPECT_EQ(url.query(), "q=a|b&c[]=1");
  EXPECT_EQ(url.fragment(), "top?x");
}

TEST(URL, TellsAbsentPartsFromEmptyOnes) {
  const URL bare = *URL::parse("about:blank");
  EXPECT_EQ(bare.authority(), std::nullopt);
  EXPECT_EQ(bare.host(), std::nullopt);
  EXPECT_EQ(bare.path(), "blank");
  EXPECT_EQ(bare.query(), std::nullopt);
  EXPECT_EQ(bare.fragment(), std::nullopt);

  const URL file = *URL::parse("file:///tmp/a");
  EXPECT_EQ(file.authority(), "");
  EXPECT_EQ(file.host(), std::nullopt);
  EXPECT_EQ(file.path(), "/tmp/a");

  const URL v6 = *URL::parse("http://[::1]:3000/");
  EXPECT_EQ(v6.host(), "[::1]");
  EXPECT_EQ(v6.port(), 3000);
}

TEST(URL, AcceptsWhatEnginesReportAndRefusesBlanksAndControls) {
  for (const char* text : {"https://a.test/?q=a|b", "https://a.test/?a[]=1&b={x}",
                           "https://a.test/%zz?100%", "https://münchen.test/straße", "x:"})
    EXPECT_TRUE(URL::parse(text)) << text;
  for (const char* text : {"", "no scheme", "//host/path", "1a:b", ":x", "https://a b/", "a:\tb",
                           "a:\x7f", "a:\xff", "-a:b"})
    EXPECT_FALSE(URL::parse(text)) << text;
}

// The examples of RFC 3986, sections 5.4.1 and 5.4.2.
TEST(URL, ResolvesReferences) {
  const URL base = *URL::parse("http://a/b/c/d;p?q");
  const std::pair<const char*, const char*> cases[] = {
      {"g:h", "g:h"},
      {"g", "http://a/b/c/g"},
      {"./g", "http://a/b/c/g"},
      {"g/", "http://a/b/c/g/"},
      {"/g", "http://a/g"},
      {"//g", "http://g"},
      {"?y", "http://a/b/c/d;p?y"},
      {"g?y", "http://a/b/c/g?y"},
      {"#s", "http://a/b/c/d;p?q#s"},
      {"g#s", "http://a/b/c/g#s"},
      {";x", "http://a/b/c/;x"},
      {"", "http://a/b/c/d;p?q"},
      {".", "http://a/b/c/"},
      {"..", "http://a/b/"},
      {"../..", "http://a/"},
      {"../../g", "http://a/g"},
      {"../../../../g", "http://a/g"},
      {"/./g", "http://a/g"},
      {"/../g", "http://a/g"},
      {"g.", "http://a/b/c/g."},
      {"..g", "http://a/b/c/..g"},
      {"./../g", "http://a/b/g"},
      {"g/./h", "http://a/b/c/g/h"},
      {"g/../h", "http://a/b/c/h"},
      {"g?y/../x", "http://a/b/c/g?y/../x"},
  };
  for (const auto& [reference, expected] : cases)
    EXPECT_EQ(base.resolve(reference).value().text(), expected) << reference;
  EXPECT_EQ(URL::parse("http://a")->resolve("g").value().text(), "http://a/g");
}

}  // namespace
}  // namespace orvel
