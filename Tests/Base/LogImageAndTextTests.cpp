#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Base/Image.h"
#include "Base/Log.h"
#include "Base/Texts.h"

namespace orvel {
namespace {

TEST(Log, KeepsThisRunsLinesWithPrivateValuesMasked) {
  Log::session.error("Couldn't load {}: {}", Masked{"secret.test"}, "code");
  Log::session.error("Couldn't load {}: {}", Masked{"secret.test"}, "code");
  Log::navigation.info("{}", Masked{"other.test"});
  const auto entries = Log::recent();
  ASSERT_GE(entries.size(), 3u);
  const auto& first = entries[entries.size() - 3];
  EXPECT_EQ(first.category, "Session");
  EXPECT_EQ(first.level, Log::Level::Error);
  EXPECT_THAT(first.message,
              testing::MatchesRegex("Couldn't load <mask.hash: [0-9a-f]{16}>: code"));
  EXPECT_EQ(first.message, entries[entries.size() - 2].message) << "equal values can be compared";
  EXPECT_NE(first.message.find(entries.back().message), 0u);
}

TEST(Log, IsBoundedAndTakesAnyBytes) {
  for (int i = 0; i < 5000; ++i) Log::app.info("line {}", i);
  EXPECT_EQ(Log::recent().size(), 4096u);
  EXPECT_EQ(Log::recent().back().message, "line 4999");
  Log::app.notice("{}", std::string(10'000, 'x') + "\xff");
  EXPECT_LE(Log::recent().back().message.size(), 2048u);
  Log::app.notice("\xff{}", 1);
  EXPECT_EQ(Log::recent().back().message,
            "\xEF\xBF\xBD"
            "1");
}

TEST(Image, ComesBackFromItsFileAndRefusesWhatIsNoPicture) {
  const std::string file = Image::make(1, 1, {0, 0, 0, 0})->encodedPNG();
  EXPECT_FALSE(Image::decode(""));
  EXPECT_FALSE(Image::decode("<html>not found</html>"));
  EXPECT_FALSE(Image::decode(file.substr(0, file.size() / 2)));
  EXPECT_FALSE(Image::decode(Image::make(3, 2, std::vector<uint8_t>(24))->encodedPNG(), 2))
      << "a side beyond the limit";
  const std::vector<uint8_t> pixels = {255, 0, 0, 255, 0, 255, 0, 128};
  EXPECT_EQ(Image::decode(Image::make(2, 1, pixels)->encodedPNG())->pixels(), pixels);
  EXPECT_FALSE(Image::make(2, 2, {1, 2, 3}));
  EXPECT_FALSE(Image::make(0, 1, {}));
}

TEST(TextsTests, placeholdersAreFilledOnceAndNothingElseIs) {
  const auto fill = [](std::string_view text) {
    return filled(text, {{"name", "{other}"}, {"other", "B"}});
  };
  EXPECT_EQ(fill("Pinned to {name}"), "Pinned to {other}");
  EXPECT_EQ(fill("{other}{other} {unknown}"), "BB {unknown}");
  EXPECT_EQ(fill("{ {other"), "{ {other");
  EXPECT_EQ(fill("{ {other}}"), "{ B}");
  EXPECT_EQ(fill("} {}"), "} {}");
  EXPECT_EQ(counted("{count} tabs", 12), "12 tabs");
}

}  // namespace
}  // namespace orvel
