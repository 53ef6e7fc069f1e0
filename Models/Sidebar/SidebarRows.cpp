#include "Models/Sidebar/SidebarRows.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "Models/Tab/BrowserTab.h"

namespace orvel {

namespace {

// Puts rows one behind the other and numbers those that would share a key.
class Rows {
 public:
  explicit Rows(size_t expected) { rows_.reserve(expected); }

  SidebarRow& add(SidebarRow::Section section, SidebarRow::Kind kind, const UUID& id = {},
                  SidebarRow::Heading heading = SidebarRow::Heading::None) {
    SidebarRow& row = rows_.emplace_back();
    row.section = section;
    row.key = {.kind = kind, .heading = heading, .id = id};
    row.key.ordinal = counts_[row.key]++;
    return row;
  }
  void addTab(SidebarRow::Section section, const TabRef& tab, size_t depth = 0,
              FolderRef parent = nullptr) {
    SidebarRow& row = add(section, SidebarRow::Kind::Tab, tab->id);
    row.tabs = {tab};
    row.depth = depth;
    row.parent = std::move(parent);
  }
  std::vector<SidebarRow> finish() && { return std::move(rows_); }

 private:
  std::vector<SidebarRow> rows_;
  std::unordered_map<SidebarRow::Key, uint32_t> counts_;
};

}  // namespace

size_t favoriteColumns(double width) {
  constexpr double kGap = 8;
  constexpr double kNarrowestTile = 48;
  const double fitting = std::floor((width + kGap) / (kNarrowestTile + kGap));
  return static_cast<size_t>(std::clamp(fitting, 2.0, 4.0));
}

std::vector<SidebarRow> sidebarRows(const Space& space, size_t columns) {
  using enum SidebarRow::Kind;
  using Section = SidebarRow::Section;
  const TabList& favorites = space.profile->favorites;
  const TabList& today = space.today;
  Rows rows(favorites.size() + space.pinned.get().size() + today.size() + 3);

  const size_t line = std::max<size_t>(columns, 1);
  for (size_t begin = 0; begin < favorites.size(); begin += line) {
    const size_t end = std::min(begin + line, favorites.size());
    rows.add(Section::Favorites, Favorites).tabs = {
        favorites.begin() + static_cast<TabList::difference_type>(begin),
        favorites.begin() + static_cast<TabList::difference_type>(end)};
  }

  rows.add(Section::Pinned, Heading, {}, SidebarRow::Heading::Pinned);
  SidebarWalk walk(space.pinned, SidebarWalk::Folders::ExpandedOnly);
  while (const SidebarItem* item = walk.next()) {
    if (const auto* tab = std::get_if<TabRef>(item)) {
      rows.addTab(Section::Pinned, *tab, walk.depth(), walk.parent());
      continue;
    }
    const FolderRef& folder = std::get<FolderRef>(*item);
    SidebarRow& row = rows.add(Section::Pinned, Folder, folder->id);
    row.folder = folder;
    row.depth = walk.depth();
    row.parent = walk.parent();
  }

  rows.add(Section::Today, Heading, {}, SidebarRow::Heading::Today);
  for (const TabRef& tab : today) rows.addTab(Section::Today, tab);
  rows.add(Section::Today, NewTab);
  return std::move(rows).finish();
}

}  // namespace orvel
