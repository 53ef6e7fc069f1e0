#include "Base/Overloaded.h"
#include "Base/Texts.h"
#include "Models/Store/BrowserStore.h"

// Moving and pinning tabs.
namespace orvel {

namespace {

// The id of what follows the member at `index`; absent for the last.
template <class List, class Identify>
std::optional<UUID> idAfter(const List& list, size_t index, Identify identify) {
  return index + 1 < list.size() ? std::optional(identify(list[index + 1])) : std::nullopt;
}

// The folder of the destination, if it has one, is the space's.
bool hasFolderOf(const Space& space, const TabDestination& destination) {
  const auto* pinned = std::get_if<PinnedDestination>(&destination);
  if (!pinned || !pinned->folder) return true;
  const auto folders = foldersOf(space.pinned.peek());
  return std::ranges::find(folders, pinned->folder) != folders.end();
}

const UUID& idOfTab(const TabRef& tab) { return tab->id; }

}  // namespace

void BrowserStore::detach(const BrowserTab& tab) {
  removeTab(tab.profile->favorites, tab);
  for (const auto& space : spaces.peek()) {
    removeItem(space->pinned, tab.id);
    removeTab(space->today, tab);
  }
}

void BrowserStore::move(TabRef tab, const TabDestination& destination,
                        std::shared_ptr<Space> space) {
  const auto& before = std::visit(
      [](const auto& place) -> const std::optional<UUID>& { return place.before; }, destination);
  // A menu may outlive the tab that it was opened on.
  if (before == tab->id || tab->isDiscarded.peek()) return;
  if (!space) space = activeSpace();
  // A row on its way out still takes drops.
  if (spaceWithID(space->id) != space) return;
  if (space->profile != tab->profile || !hasFolderOf(*space, destination)) return;
  const auto pin = [&] {
    if (!tab->pinnedURL.peek()) tab->pinnedURL = tab->url.peek();
  };
  animate(Spring::move, [&] {
    detach(*tab);
    std::visit(Overloaded{[&](const FavoritesDestination&) {
                            pin();
                            insertTab(tab->profile->favorites, tab, before);
                          },
                          [&](const PinnedDestination& pinned) {
                            pin();
                            insertItem(pinned.folder ? pinned.folder->children : space->pinned, tab,
                                       before);
                          },
                          [&](const TodayDestination&) {
                            tab->pinnedURL = std::nullopt;
                            insertTab(space->today, tab, before);
                          }},
               destination);
  });
  scheduleSave();
}

void BrowserStore::move(FolderRef folder, const PinnedDestination& destination,
                        std::shared_ptr<Space> space) {
  if (spaceWithID(space->id) != space || !hasFolderOf(*space, destination)) return;
  const auto& items = space->pinned.peek();
  // Neither into itself nor to where it stands already.
  if (destination.before == folder->id) return;
  for (FolderRef outer = destination.folder; outer; outer = parentOf(items, outer->id))
    if (outer == folder) return;
  const auto members = foldersOf(items);
  if (std::ranges::find(members, folder) == members.end()) return;
  animate(Spring::move, [&] {
    removeItem(space->pinned, folder->id);
    insertItem(destination.folder ? destination.folder->children : space->pinned, folder,
               destination.before);
  });
  scheduleSave();
}

std::optional<TabDestination> BrowserStore::placeOf(const BrowserTab& tab) const {
  const TabList& favorites = tab.profile->favorites;
  if (const auto index = indexOf(favorites, tab))
    return FavoritesDestination{idAfter(favorites, *index, idOfTab)};
  for (const auto& space : spaces.get()) {
    const TabList& today = space->today;
    if (const auto index = indexOf(today, tab))
      return TodayDestination{idAfter(today, *index, idOfTab)};
    const FolderRef parent = parentOf(space->pinned, tab.id);
    const SidebarItemList& items = parent ? parent->children : space->pinned;
    for (size_t index = 0; index < items.size(); ++index)
      if (idOf(items[index]) == tab.id)
        return PinnedDestination{parent, idAfter(items, index, idOf)};
  }
  return std::nullopt;
}

void BrowserStore::togglePin(TabRef tab) {
  const auto space = activeSpace();
  const auto former = placeOf(*tab);
  if (!former || space->profile != tab->profile) return;
  const auto undo = whileAlive([this, weakSpace = std::weak_ptr(space), tab, former = *former,
                                kept = tab->pinnedURL.peek()] {
    if (const auto live = weakSpace.lock()) undoPin(live, tab, former, kept);
  });
  const TabList& today = space->today.peek();
  if (contains(today, *tab)) {
    move(tab, PinnedDestination{}, space);
    showToast(filled(_("Pinned to {space}"), {{"space", space->name.peek()}}),
              {.symbol = "pin.fill", .undo = undo});
  } else {
    const auto first = today.empty() ? std::nullopt : std::optional(today.front()->id);
    move(tab, TodayDestination{first}, space);
    showToast(_("Moved to Today"), {.symbol = "pin.slash", .undo = undo});
  }
}

void BrowserStore::undoPin(std::shared_ptr<Space> space, TabRef tab, const TabDestination& former,
                           const std::optional<URL>& pinnedURL) {
  if (!placeOf(*tab) || !hasFolderOf(*space, former)) return;
  move(tab, former, space);
  tab->pinnedURL = pinnedURL;
}

}  // namespace orvel
