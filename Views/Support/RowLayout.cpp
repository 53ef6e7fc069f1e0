#include "Views/Support/RowLayout.h"

#include <algorithm>

namespace orvel {

RowLayout::RowLayout(std::span<const SidebarRow> rows, const Heights& heights,
                     std::optional<Gap> gap) {
  tops_.reserve(rows.size());
  heights_.reserve(rows.size());
  double y = 0;
  const auto openGap = [&](size_t index) {
    if (!gap || gap->before != index) return;
    gapTop_ = y;
    y += gap->height;
  };
  for (size_t i = 0; i < rows.size(); ++i) {
    openGap(i);
    tops_.push_back(y);
    heights_.push_back(heights[static_cast<size_t>(rows[i].key.kind)]);
    y += heights_.back();
  }
  openGap(rows.size());
  totalHeight_ = y;
}

RowLayout::Range RowLayout::rowsBetween(double from, double to) const {
  // The first row that begins below `from` has a predecessor which may reach into the stretch.
  auto begin =
      static_cast<size_t>(std::upper_bound(tops_.begin(), tops_.end(), from) - tops_.begin());
  if (begin > 0 && tops_[begin - 1] + heights_[begin - 1] > from) --begin;
  const auto end =
      static_cast<size_t>(std::lower_bound(tops_.begin(), tops_.end(), to) - tops_.begin());
  return {begin, std::max(begin, end)};
}

std::optional<size_t> RowLayout::rowAt(double y) const {
  const auto after = std::upper_bound(tops_.begin(), tops_.end(), y) - tops_.begin();
  if (after == 0) return std::nullopt;
  return static_cast<size_t>(after - 1);
}

}  // namespace orvel
