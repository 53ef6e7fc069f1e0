#include "BrowserCore/Downloads/DownloadName.h"

#include <gtest/gtest.h>

#include "BrowserCore/Text/Text.h"

namespace orvel {
namespace {

std::string named(std::string_view suggested, std::set<std::string> existing = {}) {
  return downloadName(suggested, [&](const std::string& name) { return existing.contains(name); });
}

TEST(DownloadName, NeverLeavesItsFolder) {
  const std::pair<std::string_view, const char*> cases[] = {
      {"a.pdf", "a.pdf"},
      {"../../etc/passwd", "passwd"},
      {"a/b/", "b"},
      {"///", "download"},
      {".", "download"},
      {".\x01.", "download"},
      {"a\n\x7f\u0085.txt", "a.txt"},
      {"evil\u202efdp.exe", "evilfdp.exe"},
      {"a\xff.txt", "a\uFFFD.txt"},
      {"...", "..."},
      {std::string_view("a\0b", 3), "ab"},
  };
  for (const auto& [suggested, expected] : cases)
    EXPECT_EQ(named(suggested), expected) << suggested;
}

TEST(DownloadName, CountsFromTwoBeforeTheExtension) {
  EXPECT_EQ(named("", {"download"}), "download 2");
  EXPECT_EQ(named("a.tar.gz", {"a.tar.gz", "a.tar 2.gz"}), "a.tar 3.gz");
  EXPECT_EQ(named(".profile", {".profile"}), ".profile 2");
  EXPECT_EQ(named("a.", {"a."}), "a. 2");
}

TEST(DownloadName, FitsAFileSystem) {
  std::string umlauts;
  for (int i = 0; i < 200; ++i) umlauts += "ü";
  const std::string first = named(umlauts + ".pdf");
  EXPECT_EQ(first.size(), 254u) << "251 bytes before the extension would cut a letter";
  const std::string second = named(umlauts + ".pdf", {first});
  EXPECT_TRUE(second.ends_with("ü 2.pdf") && second.size() <= 255) << second;
  EXPECT_TRUE(text::isValidUTF8(second));
  EXPECT_EQ(named("a." + std::string(10'000'000, 'x')).size(), 255u);
}

}  // namespace
}  // namespace orvel
