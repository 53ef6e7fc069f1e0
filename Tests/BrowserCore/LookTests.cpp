#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "BrowserCore/Look/SplitShares.h"
#include "BrowserCore/Look/Theme.h"

namespace orvel {
namespace {

using testing::DoubleNear;
using testing::Pointwise;

TEST(Theme, FindsTheNearestHueOnTheCircle) {
  const std::pair<double, std::string_view> cases[] = {
      {0.5, "verdigris"},
      {0.0, "cognac"},
      {0.996, "cognac"},
      {0.2, "vellum"},
      {std::numeric_limits<double>::quiet_NaN(), "claret"},
      {std::numeric_limits<double>::infinity(), "claret"},
  };
  for (const auto& [hue, id] : cases) EXPECT_EQ(Theme::forHue(hue).id, id) << hue;
  for (const Theme& theme : Theme::all) EXPECT_EQ(&Theme::forHue(theme.hue), &theme);
}

// What legibility is judged by.
double luminance(const Color& color) {
  const auto linear = [](uint8_t byte) {
    const double value = byte / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}
double contrast(const Color& a, const Color& b) {
  const auto [dark, light] = std::minmax({luminance(a), luminance(b)});
  return (light + 0.05) / (dark + 0.05);
}

TEST(Theme, CanBeReadInBothSchemes) {
  for (const Theme& theme : Theme::all)
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
      const Theme::Variant& colors = theme.in(scheme);
      const bool isDark = scheme == ColorScheme::dark;
      EXPECT_EQ(luminance(colors.backdrop.top) < 0.5, isDark) << theme.id;
      EXPECT_GE(contrast(colors.accent, colors.onAccent), 4.5) << theme.id;
      EXPECT_GE(contrast(colors.accent, colors.backdrop.top), 3) << theme.id;
      EXPECT_GE(contrast(colors.accent, colors.backdrop.bottom), 3) << theme.id;
    }
}

TEST(SplitShares, MoveOneDividerWithinItsBounds) {
  struct Case {
    std::vector<double> shares;
    size_t index;
    double delta;
    std::vector<double> expected;
  };
  const Case cases[] = {
      {{0.5, 0.5}, 0, 0.1, {0.6, 0.4}},
      {{0.5, 0.5}, 0, 9, {0.85, 0.15}},
      {{0.5, 0.5}, 0, -9, {0.15, 0.85}},
      {{0.2, 0.3, 0.5}, 1, -0.1, {0.2, 0.2, 0.6}},
      {{0.8, 0.1, 0.1}, 1, 0.5, {0.8, 0.05, 0.15}},
      {{0.5, 0.5}, 0, std::numeric_limits<double>::quiet_NaN(), {0.15, 0.85}},
      {{0.5, 0.5}, 1, 0.1, {0.5, 0.5}},
      {{}, 0, 0.1, {}},
  };
  for (const auto& [shares, index, delta, expected] : cases)
    EXPECT_THAT(resized(shares, index, delta), Pointwise(DoubleNear(1e-12), expected))
        << testing::PrintToString(shares) << " by " << delta;
}

}  // namespace
}  // namespace orvel
