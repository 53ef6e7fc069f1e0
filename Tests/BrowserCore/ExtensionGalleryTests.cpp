#include "BrowserCore/Extensions/ExtensionGallery.h"

#include <gtest/gtest.h>

namespace orvel {
namespace {

using ExtensionGallery::Listing;
using ExtensionGallery::zipArchive;
using namespace std::string_literals;

constexpr char kID[] = "abcdefghijklmnopabcdefghijklmnop";

std::string source(std::string_view url) {
  const auto listing = ExtensionGallery::listing(URL::parse(url));
  return listing ? listing->source() : "none";
}

TEST(ExtensionGallery, RecognisesListings) {
  const std::string id = kID;
  const std::string withQ = "qbcdefghijklmnopabcdefghijklmnop";
  const std::pair<std::string, std::string> cases[] = {
      {"https://chromewebstore.google.com/detail/some-name/" + id + "?hl=de", "chrome:" + id},
      {"https://ChromeWebStore.google.com//detail/" + id + "/reviews", "chrome:" + id},
      {"https://chrome.google.com/webstore/detail/name/" + id, "chrome:" + id},
      {"https://chromewebstore.google.com/detail/" + id + "/" + withQ, "chrome:" + id},
      {"https://addons.mozilla.org/firefox/addon/some-slug/", "firefox:some-slug"},
      {"https://addons.mozilla.org/en-US/firefox/addon/a%20b/reviews", "firefox:a b"},
  };
  for (const auto& [url, expected] : cases) EXPECT_EQ(source(url), expected) << url;
  for (const std::string& url : std::initializer_list<std::string>{
           "http://chromewebstore.google.com/detail/" + id,
           "HTTPS://chromewebstore.google.com/detail/" + id,
           "https://chromewebstore.google.com/detail/",
           "https://chromewebstore.google.com/detail/" + id + "a",
           "https://chromewebstore.google.com/" + id,
           "https://chromewebstore.google.com/webstore/detail/" + id,
           "https://chrome.google.com/detail/" + id, "https://chrome.google.com/webstore",
           "https://a.test/detail/" + id, "https://addons.mozilla.org/addon/x",
           "https://addons.mozilla.org/android/addon/x", "https://addons.mozilla.org/firefox/addon",
           "https://addons.mozilla.org/firefox/addon/",
           "https://addons.mozilla.org/x/addon/firefox/addon/y", "https:chromewebstore"})
    EXPECT_EQ(source(url), "none") << url;
  EXPECT_EQ(ExtensionGallery::listing(std::nullopt), std::nullopt);
}

TEST(ExtensionGallery, BuildsDownloadAddresses) {
  EXPECT_EQ(ExtensionGallery::downloadURL({Listing::Store::chrome, kID}).value().text(),
            "https://clients2.google.com/service/update2/crx?response=redirect&prodversion=141.0"
            "&acceptformat=crx2,crx3&x=id%3D" +
                std::string(kID) + "%26installsource%3Dondemand%26uc");
  EXPECT_EQ(ExtensionGallery::downloadURL({Listing::Store::firefox, "a b?ü"}).value().text(),
            "https://addons.mozilla.org/firefox/downloads/latest/a%20b%3F%C3%BC/latest.xpi");
  EXPECT_EQ(ExtensionGallery::downloadURL({Listing::Store::chrome, "a b"}), std::nullopt);
}

TEST(ExtensionGallery, TakesTheZipOutOfItsContainer) {
  const std::string zip = "PK\x03\x04rest";
  const std::string two = "\x02\0\0\0"s, three = "\x03\0\0\0"s, four = "\x04\0\0\0"s;
  const std::string one = "\x01\0\0\0"s, huge = "\xff\xff\xff\xff"s;
  EXPECT_EQ(zipArchive(zip), zip);
  EXPECT_EQ(zipArchive("Cr24" + three + two + "hh" + zip), zip);
  EXPECT_EQ(zipArchive("Cr24" + two + two + one + "kks" + zip), zip);
  for (const std::string& data :
       {""s, "PK\x03"s, "PK\x05\x06"s, "x" + zip, "Cr24"s, "Cr24" + three + "\0\0\0"s,
        "Cr24" + two + two, "Cr24" + four + two + "hh" + zip, "Cr24" + three + one + "hh" + zip,
        "Cr24" + three + two + "hh", "Cr24" + three + two + "hhPK\x03"s,
        "Cr24" + three + huge + zip, "Cr24" + two + huge + huge + zip})
    EXPECT_EQ(zipArchive(data), std::nullopt) << testing::PrintToString(data);
}

}  // namespace
}  // namespace orvel
