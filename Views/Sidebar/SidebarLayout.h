#pragma once

#include <algorithm>

#include "Models/Sidebar/SidebarRows.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Windows/WindowChrome.h"

namespace orvel {

// The room at either side of the sidebar, in pixels.
inline constexpr double kSidebarInset = 8;
// The narrowest and widest that the sidebar's edge can be dragged to.
inline constexpr double kMinimumSidebarWidth = 200;
inline constexpr double kMaximumSidebarWidth = 420;
// In a window narrower than this the sidebar is as narrow as it can be.
inline constexpr double kRoomyWidth = 720;

// The sidebar's width as it is shown; a stored one may be anything. Subscribes to it, as do the
// others.
[[nodiscard]] inline double shownSidebarWidth(const WindowChrome& chrome) {
  return std::clamp(chrome.sidebarWidth.get(), kMinimumSidebarWidth, kMaximumSidebarWidth);
}

// How many favorites stand side by side in the sidebar.
[[nodiscard]] inline size_t favoriteColumns(const WindowChrome& chrome) {
  return favoriteColumns(shownSidebarWidth(chrome) - 2 * kSidebarInset);
}

// How far the fingers have moved the pages of the sidebar, as a share of a page, from -1 to 1;
// positive brings the previous space.
[[nodiscard]] inline double swipeShare(const WindowChrome& chrome,
                                       const SpaceSwitching& switching) {
  const double offset = switching.spaceSwipeOffset;
  return std::clamp(offset / std::max(chrome.sidebarWidth.get(), 1.0), -1.0, 1.0);
}

}  // namespace orvel
