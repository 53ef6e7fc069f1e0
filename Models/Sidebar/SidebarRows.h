#pragma once

#include <cstdint>
#include <vector>

#include "Models/Spaces/Space.h"

namespace orvel {

// One row of the sidebar's list.
struct SidebarRow {
  enum class Kind : uint8_t {
    Heading,    // `heading` says of what
    Favorites,  // one line of favorites: `tabs`
    Folder,     // `folder`
    Tab,        // `tabs.front()`
    NewTab,     // the button that opens one
  };
  enum class Heading : uint8_t { None, Pinned, Today };
  enum class Section : uint8_t { Favorites, Pinned, Today };

  // What a row is known by from one computation to the next. `ordinal` tells rows apart that would
  // otherwise share a key: the lines of favorites, and items whose ids are not unique.
  struct Key {
    Kind kind = Kind::Heading;
    Heading heading = Heading::None;
    UUID id;
    uint32_t ordinal = 0;

    friend bool operator==(const Key&, const Key&) = default;
    friend auto operator<=>(const Key&, const Key&) = default;
  };

  Key key;
  Section section = Section::Today;
  size_t depth = 0;  // how many folders the row lies in
  TabList tabs;      // of the Favorites and Tab kinds
  FolderRef folder;  // of the Folder kind
  // The folder that directly holds the row; null at the top level.
  FolderRef parent;

  friend bool operator==(const SidebarRow&, const SidebarRow&) = default;
};

// How many favorites stand side by side in a sidebar of this inner width in points: 2 to 4.
[[nodiscard]] size_t favoriteColumns(double width);

// The sidebar's list of a space as one flat sequence: the favorites in lines of `columns`, the
// heading of the pinned items, these with the contents of expanded folders, Today's heading and
// tabs, and the New Tab row.
[[nodiscard]] std::vector<SidebarRow> sidebarRows(const Space& space, size_t columns);

}  // namespace orvel

template <>
struct std::hash<orvel::SidebarRow::Key> {
  size_t operator()(const orvel::SidebarRow::Key& key) const noexcept {
    return std::hash<orvel::UUID>{}(key.id) * 31 + key.ordinal * 8191 +
           static_cast<size_t>(key.kind) * 7 + static_cast<size_t>(key.heading);
  }
};
