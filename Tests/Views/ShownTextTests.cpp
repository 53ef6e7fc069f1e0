#include <gtest/gtest.h>

#include "DesignSystem/ShownText.h"
#include "DesignSystem/SiteIcon.h"

namespace orvel {
namespace {

TEST(ShownText, IsOneValidBoundedLine) {
  const struct {
    std::string text;
    size_t limit;
    const char* shown;
  } cases[] = {
      {"Plain", 10, "Plain"},
      {"", 10, ""},
      {"two\nlines\tand\x01more", 40, "two lines and more"},
      {"broken \xFF byte", 40, "broken \uFFFD byte"},
      {"0123456789ab", 10, "0123456789…"},
      {"01234567é9", 9, "01234567…"},
      {std::string("nul\0inside", 10), 40, "nul inside"},
  };
  for (const auto& one : cases) EXPECT_EQ(shownText(one.text, one.limit), one.shown);
  EXPECT_LT(shownText(std::string(10'000'000, 'x')).size(), kMaxShownText + 4);
}

TEST(SiteIcon, TakesTheFirstLetterOrDigit) {
  EXPECT_EQ(initialOf("kelp.example"), "K");
  EXPECT_EQ(initialOf("  4chan"), "4");
  EXPECT_EQ(initialOf("éclair"), "É");
  EXPECT_EQ(initialOf("..."), "");
  EXPECT_EQ(initialOf("\xFFx"), "");
}

}  // namespace
}  // namespace orvel
