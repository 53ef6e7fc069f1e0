#include <algorithm>

#include "Base/Assert.h"
#include "BrowserCore/Text/Text.h"
#include "Models/Store/BrowserStore.h"

// Making, editing, switching and deleting spaces, and the end of a profile with its last one.
namespace orvel {

namespace {

std::optional<size_t> indexOfSpace(const std::vector<std::shared_ptr<Space>>& spaces,
                                   const UUID& id) {
  const auto found = std::ranges::find(spaces, id, [](const auto& space) { return space->id; });
  if (found == spaces.end()) return std::nullopt;
  return static_cast<size_t>(found - spaces.begin());
}

}  // namespace

// Drafts

void BrowserStore::beginNewSpace() {
  const size_t count = spaces.peek().size();
  spaceDraft = SpaceDraft{.hue = Theme::all[count % Theme::all.size()].hue,
                          .symbol = kSpaceSymbols[count % kSpaceSymbols.size()].symbol};
}

void BrowserStore::beginEditing(const Space& space) {
  spaceDraft = SpaceDraft{.spaceID = space.id,
                          .name = space.name.peek(),
                          .hue = space.hue.peek(),
                          .symbol = space.symbol.peek(),
                          .profileID = space.profile->id,
                          .appearance = space.appearance.peek()};
}

void BrowserStore::commit(const SpaceDraft& draft) {
  requireMainThread();
  const std::string name(text::trimmed(draft.name));
  if (name.empty()) return;
  const auto edited = draft.spaceID ? spaceWithID(*draft.spaceID) : nullptr;
  if (edited) {
    edited->name = name;
    edited->hue = draft.hue;
    edited->symbol = draft.symbol;
    edited->appearance = draft.appearance;
    updateWindowAppearance();
  } else {
    const auto space = std::make_shared<Space>(UUID::random(), profileFor(draft.profileID, name),
                                               name, draft.symbol, draft.hue);
    space->appearance = draft.appearance;
    spaces.update([&](auto& list) { list.push_back(space); });
    switchTo(space);
  }
  spaceDraft = std::nullopt;
  scheduleSave();
}

std::shared_ptr<Profile> BrowserStore::profileFor(const std::optional<UUID>& id,
                                                  const std::string& name) {
  for (const auto& profile : profiles.peek())
    if (profile->id == id) return profile;
  auto made = std::make_shared<Profile>(services_.engine, UUID::random(), name);
  profiles.update([&](auto& list) { list.push_back(made); });
  return made;
}

// Switching

void BrowserStore::switchTo(std::shared_ptr<Space> space, const Spring& animation) {
  requireMainThread();
  const UUID former = activeSpaceID_.peek();
  if (space->id == former || spaceWithID(space->id) != space) return;
  const auto& list = spaces.peek();
  spaceSwitchForward =
      indexOfSpace(list, former).value_or(0) < indexOfSpace(list, space->id).value_or(0);
  leavingSpaceID = former;
  animate(
      animation,
      [&] {
        setActiveSpaceID(space->id);
        revealingSpaceID = std::nullopt;
        spaceSwipeOffset = 0;
      },
      [weak = weak_from_this(), former] {
        // A later switch keeps its own.
        const auto store = weak.lock();
        if (store && store->leavingSpaceID.peek() == former) store->leavingSpaceID = std::nullopt;
      });
  capture = std::nullopt;
  reader = std::nullopt;
  closePeek();
  endHidingItems();
  if (const TabRef selected = space->selectedTab(); selected && !selected->isDiscarded.peek())
    selected->webView();
  later([](BrowserStore& store) { store.focusWebView(); });
  scheduleSave();
}

// The pager

std::vector<std::shared_ptr<Space>> BrowserStore::pagerSpaces() const {
  const std::optional<UUID> shown[] = {activeSpaceID(), leavingSpaceID.get(),
                                       revealingSpaceID.get()};
  std::vector<std::shared_ptr<Space>> pages = spaces.get();
  std::erase_if(pages, [&](const auto& space) {
    return std::ranges::find(shown, std::optional(space->id)) == std::end(shown);
  });
  return pages;
}

int BrowserStore::pagerPosition(const Space& space) const {
  const auto index = indexOfSpace(spaces.get(), space.id);
  const auto active = indexOfSpace(spaces.get(), activeSpaceID());
  if (!index || !active || index == active) return 0;
  return *index < *active ? -1 : 1;
}

std::shared_ptr<Space> BrowserStore::revealingSpace() const {
  const std::optional<UUID>& id = revealingSpaceID;
  return id ? spaceWithID(*id) : nullptr;
}

std::shared_ptr<Space> BrowserStore::adjacentSpace(int delta) const {
  const auto& list = spaces.peek();
  const auto active = indexOfSpace(list, activeSpaceID_.peek());
  if (!active) return nullptr;
  // Unsigned: before the first is beyond the last.
  const size_t index = *active + static_cast<size_t>(delta);
  return index < list.size() ? list[index] : nullptr;
}

// Deletion

bool BrowserStore::deletesProfile(const Space& space) const {
  return std::ranges::none_of(spaces.get(), [&](const auto& other) {
    return other.get() != &space && other->profile == space.profile;
  });
}

void BrowserStore::deleteSpace(std::shared_ptr<Space> space) {
  requireMainThread();
  const auto index = indexOfSpace(spaces.peek(), space->id);
  if (spaces.peek().size() < 2 || !index) return;
  const bool isProfileGoing = deletesProfile(*space);
  TabList tabs = tabsOf(space->pinned.peek());
  tabs.insert(tabs.end(), space->today.peek().begin(), space->today.peek().end());
  if (isProfileGoing) {
    const TabList& favorites = space->profile->favorites.peek();
    tabs.insert(tabs.end(), favorites.begin(), favorites.end());
  }
  for (const TabRef& tab : tabs) {
    if (auto* controller = extensionsKnowing(*tab)) controller->didCloseTab(*tab);
    tab->isDiscarded = true;
    tab->teardown();
  }

  const auto isOfSpace = [id = space->id](const auto& entry) { return entry.spaceID == id; };
  std::erase_if(closedTabs, isOfSpace);
  archive.update([&](auto& records) { std::erase_if(records, isOfSpace); });
  settings.linkRoutes.update([&](auto& routes) { std::erase_if(routes, isOfSpace); });

  if (space->id == activeSpaceID_.peek()) switchTo(spaces.peek()[*index == 0 ? 1 : *index - 1]);
  animate(Spring::quick, [&] { spaces.update([&](auto& list) { std::erase(list, space); }); });
  if (isProfileGoing) removeWebsiteData(space->profile);
  saveArchive();
  scheduleSave();
}

void BrowserStore::removeWebsiteData(const std::shared_ptr<Profile>& profile) {
  profiles.update([&](auto& list) { std::erase(list, profile); });
  profile->favorites = TabList();
  later([id = profile->id](BrowserStore& store) {
    if (store.history) store.history->removeAll(id);
  });
  forgetChoices(profile->id);
  services_.scheduler.start(removeDataStore(services_.engine, profile->id)).detach();
}

Task<> BrowserStore::removeDataStore(Engine& engine, UUID id) {
  constexpr int kMostAttempts = 5;
  // The views that were just torn down take a moment to let go of it.
  constexpr Duration kBeforeAttempt = 1s;
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    co_await sleep(kBeforeAttempt);
    auto [future, resolve] = makeFuture<std::optional<std::string>>();
    engine.removeDataStoreForIdentifier(id, resolve);
    const auto error = co_await std::move(future);
    if (!error) co_return;
  }
}

}  // namespace orvel
