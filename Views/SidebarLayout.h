#pragma once

#include "Models/BrowserStore.h"
#include "Models/SidebarRows.h"

namespace orvel {

// The room at either side of the sidebar, in pixels.
inline constexpr double kSidebarInset = 8;
// The narrowest and widest that the sidebar's edge can be dragged to.
inline constexpr double kMinimumSidebarWidth = 200;
inline constexpr double kMaximumSidebarWidth = 420;
// A window narrower than this shows the sidebar over the page instead of beside it.
inline constexpr double kDockingWidth = 720;

// How many favorites stand side by side in the sidebar. Subscribes to its width.
[[nodiscard]] inline size_t favoriteColumns(const BrowserStore& store) {
  return favoriteColumns(store.sidebarWidth.get() - 2 * kSidebarInset);
}

}  // namespace orvel
