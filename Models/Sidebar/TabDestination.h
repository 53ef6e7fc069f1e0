#pragma once

#include <optional>
#include <variant>

#include "Models/Sidebar/SidebarItem.h"

namespace orvel {

// A place in the lists of a space: in front of the item with the id `before`, or at the end without
// one.
struct FavoritesDestination {
  std::optional<UUID> before;
};
struct PinnedDestination {
  FolderRef folder;  // null: the top level
  std::optional<UUID> before;
};
struct TodayDestination {
  std::optional<UUID> before;
};
using TabDestination = std::variant<FavoritesDestination, PinnedDestination, TodayDestination>;

// What a dragged tab carries.
struct TabDrag {
  UUID id;
};

}  // namespace orvel
