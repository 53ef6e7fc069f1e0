#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "Models/Sidebar/SidebarRows.h"

namespace orvel {

// Where the rows of a list lie: each kind has one height, and a gap may stand open in front of a
// row. Lengths are in pixels from the list's top.
class RowLayout {
 public:
  static constexpr size_t kKinds = 5;
  using Heights = std::array<double, kKinds>;

  struct Gap {
    size_t before = 0;  // the number of rows: at the end
    double height = 0;

    friend bool operator==(const Gap&, const Gap&) = default;
  };
  // A range of indices, the end left out.
  struct Range {
    size_t begin = 0;
    size_t end = 0;

    bool contains(size_t index) const { return index >= begin && index < end; }
  };

  RowLayout() = default;
  RowLayout(std::span<const SidebarRow> rows, const Heights& heights,
            std::optional<Gap> gap = std::nullopt);

  double top(size_t index) const { return tops_[index]; }
  double height(size_t index) const { return heights_[index]; }
  double totalHeight() const { return totalHeight_; }
  // Where the open gap begins; absent without one.
  std::optional<double> gapTop() const { return gapTop_; }

  // The rows that touch the stretch from `from` to `to`.
  Range rowsBetween(double from, double to) const;
  // The row at a height; the last one below the end. Absent without rows and above the first.
  std::optional<size_t> rowAt(double y) const;

 private:
  std::vector<double> tops_;
  std::vector<double> heights_;
  std::optional<double> gapTop_;
  double totalHeight_ = 0;
};

}  // namespace orvel
