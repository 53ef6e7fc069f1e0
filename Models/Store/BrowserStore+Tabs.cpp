#include <unordered_set>

#include "Base/Assert.h"
#include "Base/Texts.h"
#include "Models/Settings/Settings.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Tab/PageFullscreen.h"
#include "Models/Windows/LittleWindows.h"

// Opening, selecting and closing tabs.
namespace orvel {

// Finding

std::shared_ptr<Space> BrowserStore::spaceContaining(const BrowserTab& tab) const {
  for (const auto& space : spaces.get())
    if (contains(space->today, tab) || contains(tabsOf(space->pinned), tab)) return space;
  return nullptr;
}

std::shared_ptr<Space> BrowserStore::spaceOn(const Profile& profile) const {
  if (auto active = activeSpace(); active->profile.get() == &profile) return active;
  for (const auto& space : spaces.get())
    if (space->profile.get() == &profile) return space;
  return nullptr;
}

TabRef BrowserStore::tab(const TabDrag& drag) const { return activeSpace()->tab(drag.id); }

WebExtensionController* BrowserStore::extensionsKnowing(const BrowserTab& tab) const {
  return tab.profile->isPrivate ? nullptr : extensions.controller.get();
}

// Opening

TabRef BrowserStore::openTab(const std::optional<URL>& url, OpenOptions options) {
  requireMainThread();
  std::shared_ptr<Space> space = std::move(options.in);
  if (space && spaceWithID(space->id) != space) space = nullptr;
  if (!space && options.after) space = spaceContaining(*options.after);
  if (!space && options.after) space = spaceOn(*options.after->profile);
  if (!space) space = activeSpace();

  TabRef tab = BrowserTab::make(services_, {.profile = space->profile,
                                            .host = tabHost(),
                                            .url = url,
                                            .lastActiveAt = services_.scheduler.now(),
                                            .configuration = std::move(options.configuration),
                                            .schemeSource = options.schemeSource});
  const auto neighbor = options.after ? indexOf(space->today.peek(), *options.after) : std::nullopt;
  const auto index = static_cast<TabList::difference_type>(neighbor ? *neighbor + 1 : 0);
  animate(Spring::entry, [&] {
    space->today.update([&](TabList& today) { today.insert(today.begin() + index, tab); });
  });
  if (auto* controller = extensionsKnowing(*tab)) controller->didOpenTab(*tab);
  if (options.select) select(tab, space);
  scheduleSave();
  return tab;
}

// Selecting

void BrowserStore::select(TabRef tab, std::shared_ptr<Space> space) {
  requireMainThread();
  if (!space) space = spaceContaining(*tab);
  if (!space) space = spaceOn(*tab->profile);
  // Whoever chose it may have done so before it was closed, or its space deleted.
  if (!space || spaceWithID(space->id) != space || !contains(space->allTabs(), *tab)) return;
  const TabRef prior = space->selectedTab();
  const Date now = services_.scheduler.now();
  if (prior) leaveTab(prior, tab, *space, now);
  tab->lastActiveAt = now;
  const TabList split = space->splitTabs();
  if (contains(split, *tab))
    for (const TabRef& member : split) member->lastActiveAt = now;

  coming.didSelect(tab->id);
  if (pageFullscreen.tab.peek() != tab) pageFullscreen.leave();

  setActiveSpaceID(space->id);
  space->selectedTabID = tab->id;
  if (!tab->isDiscarded.peek()) tab->webView();
  if (prior != tab) didActivate(tab, prior);
  later([this] { focusWebView(); });
  scheduleSave();
}

void BrowserStore::leaveTab(const TabRef& prior, const TabRef& next, const Space& space, Date now) {
  prior->captureThumbnail();
  const bool keepsPlayingInPicture = prior != next && prior->isPlayingMedia.peek() &&
                                     settings.autoPictureInPicture.peek() &&
                                     !space.isInSplit(*prior) && prior->liveWebView();
  if (keepsPlayingInPicture) prior->enterPictureInPicture();
  prior->lastActiveAt = now;
}

void BrowserStore::didActivate(const TabRef& tab, const TabRef& prior) {
  if (auto* controller = extensionsKnowing(*tab)) controller->didActivateTab(*tab, prior.get());
  if (tab->isInAutoPictureInPicture) {
    tab->isInAutoPictureInPicture = false;
    if (tab->liveWebView()) tab->leavePictureInPicture();
  }
  if (prior) services_.scheduler.start(prior->refreshMediaState()).detach();
}

void BrowserStore::selectAdjacentTab(int step) {
  const auto space = activeSpace();
  const TabList visible = space->visibleTabs();
  if (visible.empty()) return;
  const TabRef selected = space->selectedTab();
  const auto index = selected ? indexOf(visible, *selected) : std::nullopt;
  if (!index) return select(visible.front());
  const auto count = static_cast<int64_t>(visible.size());
  const auto next = ((static_cast<int64_t>(*index) + step) % count + count) % count;
  select(visible[static_cast<size_t>(next)]);
}

void BrowserStore::selectTabNumber(int number) {
  constexpr int kLast = 9;
  const TabList visible = activeSpace()->visibleTabs();
  const auto count = static_cast<int64_t>(visible.size());
  const int64_t index = number == kLast ? count - 1 : int64_t{number} - 1;
  if (index >= 0 && index < count) select(visible[static_cast<size_t>(index)]);
}

// Closing

void BrowserStore::close(TabRef tab) {
  requireMainThread();
  if (const auto little = littleWindows.windowOf(*tab)) return little->close();

  auto space = spaceContaining(*tab);
  if (!space) space = activeSpace();
  const bool wasSelected = space->selectedTab() == tab;
  if (coming.hidingItemsTabID.peek() == tab->id) coming.endHidingItems();
  std::vector<UUID> split = space->split();
  std::erase(split, tab->id);
  space->setSplit(std::move(split));

  size_t next = 0;
  if (const auto index = indexOf(space->today.peek(), *tab)) {
    next = *index;
    archive.didClose(*tab, *space);
    animate(Spring::quick, [&] { removeTab(space->today, *tab); });
    tab->isDiscarded = true;
    tab->teardown();
    if (auto* controller = extensionsKnowing(*tab)) controller->didCloseTab(*tab);
  } else {
    tab->unload();
  }
  if (wasSelected) {
    const TabList& today = space->today.peek();
    if (today.empty())
      space->selectedTabID = std::nullopt;
    else
      select(today[std::min(next, today.size() - 1)]);
  }
  scheduleSave();
}

void BrowserStore::clearToday(std::shared_ptr<Space> space, const std::optional<TabList>& only) {
  TabList tabs;
  TabList staying;
  for (const TabRef& tab : space->today.peek())
    (!only || contains(*only, *tab) ? tabs : staying).push_back(tab);
  if (tabs.empty() || spaceWithID(space->id) != space) return;
  const TabRef selected = space->selectedTab();
  const bool losesSelection = selected && contains(tabs, *selected);
  for (const TabRef& tab : tabs) {
    archive.didClose(*tab, *space);
    if (auto* controller = extensionsKnowing(*tab)) controller->didCloseTab(*tab);
  }
  animate(
      Spring::quick, [&] { space->today = std::move(staying); },
      [space, tabs] {
        // Whoever undoes this in time finds the tabs alive.
        const std::unordered_set<TabRef> back(space->today.peek().begin(),
                                              space->today.peek().end());
        for (const TabRef& tab : tabs) {
          if (back.contains(tab) || !tab->liveWebView()) continue;
          tab->hibernate();
        }
      });
  if (losesSelection) space->selectedTabID = std::nullopt;
  scheduleSave();
  showToast(
      counted(ngettext("Closed {count} tab", "Closed {count} tabs", tabs.size()), tabs.size()),
      {.symbol = "xmark.circle",
       .undo = whileAlive([this, space, tabs] { undoClearToday(space, tabs); })});
}

void BrowserStore::undoClearToday(const std::shared_ptr<Space>& space, const TabList& tabs) {
  if (spaceWithID(space->id) != space) return;
  animate(Spring::entry, [&] {
    space->today.update(
        [&](TabList& today) { today.insert(today.begin(), tabs.begin(), tabs.end()); });
  });
  for (const TabRef& tab : tabs) {
    tab->pageState.markStale();  // its file may be gone
    if (auto* controller = extensionsKnowing(*tab)) controller->didOpenTab(*tab);
  }
  archive.forgetClosed(tabs);
  scheduleSave();
}

}  // namespace orvel
