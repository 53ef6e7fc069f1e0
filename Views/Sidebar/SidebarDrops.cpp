#include "Views/Sidebar/SidebarDrops.h"

#include <cmath>

#include "Models/Tab/BrowserTab.h"

namespace orvel {

namespace {

using Kind = SidebarRow::Kind;

// The part of a folder's height, at either end, that means beside it.
constexpr double kBeside = 0.28;
// The part of the first heading's height that means above it.
constexpr double kAboveHeading = 0.4;

bool isItem(const SidebarRow& row) {
  return row.key.kind == Kind::Tab || row.key.kind == Kind::Folder;
}

const UUID& itemID(const SidebarRow& row) {
  return row.key.kind == Kind::Folder ? row.folder->id : row.tabs.front()->id;
}

TabDestination inFrontOf(const SidebarRow& row) {
  if (row.section == SidebarRow::Section::Today) return TodayDestination{itemID(row)};
  return PinnedDestination{row.parent, itemID(row)};
}

// The first row behind the item at `index` and all it holds.
size_t endOf(std::span<const SidebarRow> rows, size_t index) {
  size_t end = index + 1;
  while (end < rows.size() && isItem(rows[end]) && rows[end].section == rows[index].section &&
         rows[end].depth > rows[index].depth)
    ++end;
  return end;
}

TabDestination behind(std::span<const SidebarRow> rows, size_t index) {
  const auto& row = rows[index];
  const size_t next = endOf(rows, index);
  const bool hasSibling = next < rows.size() && isItem(rows[next]) &&
                          rows[next].section == row.section && rows[next].parent == row.parent;
  const auto before = hasSibling ? std::optional(itemID(rows[next])) : std::nullopt;
  if (row.section == SidebarRow::Section::Today) return TodayDestination{before};
  return PinnedDestination{row.parent, before};
}

SidebarDrop topOfSection(std::span<const SidebarRow> rows, size_t heading) {
  const bool isToday = rows[heading].key.heading == SidebarRow::Heading::Today;
  const size_t first = heading + 1;
  const bool hasItem = first < rows.size() && isItem(rows[first]);
  const auto before = hasItem ? std::optional(itemID(rows[first])) : std::nullopt;
  const RowDrop place = {RowDrop::Place::Before, first};
  if (isToday) return {TodayDestination{before}, place};
  return {PinnedDestination{nullptr, before}, place};
}

SidebarDrop ontoFavorites(std::span<const SidebarRow> rows, const RowPoint& point, size_t columns) {
  const auto& row = rows[point.row];
  const auto slot = static_cast<size_t>(std::lround(point.x * static_cast<double>(columns)));
  const RowDrop place = {RowDrop::Place::Into, point.row};
  if (slot < row.tabs.size()) return {FavoritesDestination{row.tabs[slot]->id}, place};
  const bool hasNextLine =
      point.row + 1 < rows.size() && rows[point.row + 1].key.kind == Kind::Favorites;
  if (!hasNextLine) return {FavoritesDestination{}, place};
  return {FavoritesDestination{rows[point.row + 1].tabs.front()->id}, place};
}

}  // namespace

std::optional<SidebarDrop> sidebarDrop(std::span<const SidebarRow> rows, const RowPoint& point,
                                       size_t columns) {
  if (point.row >= rows.size()) return std::nullopt;
  const auto& row = rows[point.row];
  using Place = RowDrop::Place;
  switch (row.key.kind) {
    case Kind::Favorites:
      return ontoFavorites(rows, point, columns);
    case Kind::Heading:
      if (point.row == 0 && point.y < kAboveHeading)
        return SidebarDrop{FavoritesDestination{}, {Place::Before, 0}};
      return topOfSection(rows, point.row);
    case Kind::NewTab:
      return SidebarDrop{TodayDestination{}, {Place::Before, point.row}};
    case Kind::Folder:
      if (point.y >= kBeside && point.y <= 1 - kBeside)
        return SidebarDrop{PinnedDestination{row.folder, std::nullopt}, {Place::Into, point.row}};
      break;
    case Kind::Tab:
      break;
  }
  if (point.y < 0.5) return SidebarDrop{inFrontOf(row), {Place::Before, point.row}};
  // Behind an open folder is in front of what it shows first.
  if (row.key.kind == Kind::Folder && point.row + 1 < rows.size() &&
      rows[point.row + 1].parent == row.folder)
    return SidebarDrop{inFrontOf(rows[point.row + 1]), {Place::Before, point.row + 1}};
  return SidebarDrop{behind(rows, point.row), {Place::Before, endOf(rows, point.row)}};
}

std::optional<TabDestination> sidebarMove(std::span<const SidebarRow> rows, size_t index,
                                          int step) {
  if (index >= rows.size() || !isItem(rows[index])) return std::nullopt;
  const auto& row = rows[index];
  const size_t next = step > 0 ? endOf(rows, index) : index - 1;  // beyond the end above the first
  if (next >= rows.size()) return std::nullopt;
  const auto& other = rows[next];
  const bool isSameSection = isItem(other) && other.section == row.section;
  // From either end of a folder the way leads beside it first.
  if (row.parent && (!isSameSection || other.depth < row.depth)) {
    size_t folder = index;
    while (rows[folder].folder != row.parent) --folder;
    return step < 0 ? inFrontOf(rows[folder]) : behind(rows, folder);
  }
  if (isSameSection) {
    if (step > 0) return sidebarDrop(rows, {next, 0.5, 0.9}, 1)->destination;
    return other.depth > row.depth ? behind(rows, next) : inFrontOf(other);
  }
  if (row.folder || other.key.heading != SidebarRow::Heading::Today) return std::nullopt;
  if (step > 0) return topOfSection(rows, next).destination;
  return PinnedDestination{};
}

}  // namespace orvel
