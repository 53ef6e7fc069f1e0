#include "BrowserCore/Look/SplitShares.h"

namespace orvel {

std::vector<double> resized(std::vector<double> shares, size_t index, double delta) {
  constexpr double kSmallest = 0.15;
  if (shares.size() < 2 || index > shares.size() - 2) return shares;
  const double pair = shares[index] + shares[index + 1];
  // In this order: a pair too small for both bounds keeps the upper one.
  const double left = std::min(std::max(kSmallest, shares[index] + delta), pair - kSmallest);
  shares[index] = left;
  shares[index + 1] = pair - left;
  return shares;
}

}  // namespace orvel
