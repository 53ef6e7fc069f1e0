#include "Models/Spaces/SpaceEditing.h"

#include <algorithm>

#include "Base/Assert.h"
#include "BrowserCore/Text/Text.h"
#include "Models/CommandBar/PickedChoices.h"
#include "Models/Settings/Settings.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/SessionFile.h"
#include "Models/Windows/WindowChrome.h"

namespace orvel {

namespace {

Task<> removeDataStore(Engine& engine, UUID id) {
  constexpr int kMaxAttempts = 5;
  // The views that were just torn down take a moment to let go of it.
  constexpr Duration kBeforeAttempt = 1s;
  for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
    co_await sleep(kBeforeAttempt);
    auto [future, resolve] = makeFuture<Result<void, std::string>>();
    engine.removeDataStoreForIdentifier(id, resolve);
    const auto removed = co_await std::move(future);
    if (removed) co_return;
  }
}

}  // namespace

// Drafts

void SpaceEditing::beginNewSpace() {
  const size_t count = store_.spaces.peek().size();
  spaceDraft = SpaceDraft{.hue = Theme::all[count % Theme::all.size()].hue,
                          .symbol = kSpaceSymbols[count % kSpaceSymbols.size()].symbol};
}

void SpaceEditing::beginEditing(const Space& space) {
  spaceDraft = SpaceDraft{.spaceID = space.id,
                          .name = space.name.peek(),
                          .hue = space.hue.peek(),
                          .symbol = space.symbol.peek(),
                          .profileID = space.profile->id,
                          .appearance = space.appearance.peek()};
}

void SpaceEditing::preview(const Theme& theme) {
  previewTheme = theme;
  store_.chrome.updateWindowAppearance();
}

void SpaceEditing::preview(Space::Appearance appearance) {
  previewAppearance = appearance;
  store_.chrome.updateWindowAppearance();
}

void SpaceEditing::endDraft() {
  previewTheme = std::nullopt;
  previewAppearance = std::nullopt;
  spaceDraft = std::nullopt;
  store_.chrome.updateWindowAppearance();
}

void SpaceEditing::commit(const SpaceDraft& draft) {
  requireMainThread();
  const std::string name(text::trimmed(draft.name));
  if (name.empty()) return;
  const auto edited = draft.spaceID ? store_.spaceWithID(*draft.spaceID) : nullptr;
  if (edited) {
    edited->name = name;
    edited->hue = draft.hue;
    edited->symbol = draft.symbol;
    edited->appearance = draft.appearance;
  } else {
    const auto space = std::make_shared<Space>(UUID::random(), profileFor(draft.profileID, name),
                                               name, draft.symbol, draft.hue);
    space->appearance = draft.appearance;
    auto all = store_.spaces.peek();
    all.push_back(space);
    store_.setSpaces(std::move(all));
    store_.switching.switchTo(space);
  }
  endDraft();
  store_.scheduleSave();
}

std::shared_ptr<Profile> SpaceEditing::profileFor(const std::optional<UUID>& id,
                                                  const std::string& name) {
  for (const auto& profile : store_.profiles.peek())
    if (profile->id == id) return profile;
  auto made = std::make_shared<Profile>(store_.services().engine, UUID::random(), name);
  auto profiles = store_.profiles.peek();
  profiles.push_back(made);
  store_.setProfiles(std::move(profiles));
  return made;
}

// Deletion

bool SpaceEditing::deletesProfile(const Space& space) const {
  return std::ranges::none_of(store_.spaces.get(), [&](const auto& other) {
    return other.get() != &space && other->profile == space.profile;
  });
}

void SpaceEditing::deleteSpace(std::shared_ptr<Space> space) {
  requireMainThread();
  const auto index = indexOfSpace(store_.spaces.peek(), space->id);
  if (store_.spaces.peek().size() < 2 || !index) return;
  const bool isProfileGoing = deletesProfile(*space);
  TabList tabs = tabsOf(space->pinned.peek());
  tabs.insert(tabs.end(), space->today.peek().begin(), space->today.peek().end());
  if (isProfileGoing) {
    const TabList& favorites = space->profile->favorites.peek();
    tabs.insert(tabs.end(), favorites.begin(), favorites.end());
  }
  for (const TabRef& tab : tabs) {
    if (auto* controller = store_.extensionsKnowing(*tab)) controller->didCloseTab(*tab);
    tab->isDiscarded = true;
    tab->teardown();
  }

  store_.archive.forgetSpace(space->id);
  store_.settings.linkRoutes.update([&](auto& routes) {
    std::erase_if(routes, [&](const LinkRoute& route) { return route.spaceID == space->id; });
  });

  if (space->id == store_.activeSpaceID.peek())
    store_.switching.switchTo(store_.spaces.peek()[*index == 0 ? 1 : *index - 1]);
  auto remaining = store_.spaces.peek();
  std::erase(remaining, space);
  store_.animate(Spring::quick, [&] { store_.setSpaces(std::move(remaining)); });
  if (isProfileGoing) removeWebsiteData(space->profile);
  store_.session.saveArchive();
  store_.scheduleSave();
}

void SpaceEditing::removeWebsiteData(const std::shared_ptr<Profile>& profile) {
  auto profiles = store_.profiles.peek();
  std::erase(profiles, profile);
  store_.setProfiles(std::move(profiles));
  profile->favorites = TabList();
  store_.later([this, id = profile->id] {
    if (store_.history) store_.history->removeAll(id);
  });
  store_.choices.forgetChoices(profile->id);
  store_.services()
      .scheduler.start(removeDataStore(store_.services().engine, profile->id))
      .detach();
}

}  // namespace orvel
