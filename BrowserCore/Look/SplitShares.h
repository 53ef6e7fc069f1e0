#pragma once

#include <cstddef>
#include <vector>

namespace orvel {

// The panes' shares of the width after the divider behind pane `index` moved right by `delta` of
// the width. Both its neighbors keep at least 0.15 where there is room for that; their sum and all
// other shares stay. Unchanged when no such divider exists.
[[nodiscard]] std::vector<double> resized(std::vector<double> shares, size_t index, double delta);

}  // namespace orvel
