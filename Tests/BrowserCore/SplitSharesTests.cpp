#include "BrowserCore/Look/SplitShares.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace orvel {
namespace {

using testing::DoubleNear;
using testing::Pointwise;

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
