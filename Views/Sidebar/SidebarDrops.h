#pragma once

#include <optional>
#include <span>

#include "Models/Sidebar/TabDestination.h"
#include "Views/Support/RowList.h"

namespace orvel {

// What letting go of a tab over the sidebar's list would do, and how it shows.
struct SidebarDrop {
  TabDestination destination;
  RowDrop place;
};

// Absent where a tab cannot be dropped. A tab is dropped in front of the row below the pointer's
// half or behind it; in the middle of a folder it goes into the folder. A heading means the top of
// its section and the New Tab row the end of Today's; above the first heading, where there are no
// favorites yet, lies the first place among them. `columns` favorites stand side by side.
[[nodiscard]] std::optional<SidebarDrop> sidebarDrop(std::span<const SidebarRow> rows,
                                                     const RowPoint& point, size_t columns);

// Where the tab or folder of a row goes that is moved by one place, up (-1) or down (1); absent for
// other rows and at the ends. It enters and leaves open folders on its way; a folder takes all that
// it holds along, and stays among what is pinned.
[[nodiscard]] std::optional<TabDestination> sidebarMove(std::span<const SidebarRow> rows,
                                                        size_t index, int step);

}  // namespace orvel
