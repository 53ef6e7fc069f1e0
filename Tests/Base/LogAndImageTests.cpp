#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Base/Image.h"
#include "Base/Log.h"

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

TEST(Image, ComesBackFromItsOwnFile) {
  const std::vector<uint8_t> pixels = {255, 0, 0, 255, 0, 255, 0, 128};
  const ImageRef image = Image::make(2, 1, pixels);
  ASSERT_TRUE(image);
  const ImageRef decoded = Image::decode(image->encodedPNG());
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->width(), 2);
  EXPECT_EQ(decoded->height(), 1);
  EXPECT_EQ(decoded->pixels(), pixels);
}

TEST(Image, RefusesWhatIsNoPicture) {
  const std::string file = Image::make(1, 1, {0, 0, 0, 0})->encodedPNG();
  EXPECT_FALSE(Image::decode(""));
  EXPECT_FALSE(Image::decode("<html>not found</html>"));
  EXPECT_FALSE(Image::decode(file.substr(0, file.size() / 2)));
  EXPECT_FALSE(Image::decode(Image::make(3, 2, std::vector<uint8_t>(24))->encodedPNG(), 2))
      << "a side beyond the limit";
  EXPECT_FALSE(Image::make(2, 2, {1, 2, 3}));
  EXPECT_FALSE(Image::make(0, 1, {}));
}

}  // namespace
}  // namespace orvel
