#include "Models/Store/ComingFeatures.h"

#include "Base/Texts.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

namespace {

Task<> copyPicture(std::weak_ptr<BrowserStore> weak, TabRef tab, std::optional<PageRect> rect) {
  Task<ImageRef> drawing = tab->screenshot(rect);
  const ImageRef image = co_await std::move(drawing);
  const auto store = weak.lock();
  if (!store || !image) co_return;
  store->services().desktop.clipboard.setImage(image);
  store->showToast(_("Capture copied"), {.symbol = "camera.viewfinder"});
}

// Waits for one tab after the other, so that a slow page delays nobody but the rest.
Task<> mediaLoop(std::weak_ptr<BrowserStore> weak) {
  constexpr Duration kInterval = 10s;
  for (;;) {
    const SleepResult result = co_await sleep(kInterval);
    if (result == SleepResult::Cancelled) co_return;
    TabList playing;
    {
      const auto store = weak.lock();
      if (!store) co_return;
      for (const TabRef& tab : store->everyTab())
        if (tab->isPlayingMedia) playing.push_back(tab);
    }
    for (const TabRef& tab : playing) co_await tab->refreshMediaState();
  }
}

}  // namespace

void ComingFeatures::didSelect(const UUID& tab) {
  if (reader.peek() && reader.peek()->tabID != tab) reader = std::nullopt;
  if (capture.peek() && capture.peek() != tab) capture = std::nullopt;
  if (hidingItemsTabID.peek() != tab) endHidingItems();
}

void ComingFeatures::didLeaveSpace() {
  capture = std::nullopt;
  reader = std::nullopt;
  endHidingItems();
}

// Pictures and media

void ComingFeatures::beginCapture(TabRef tab) { copyScreenshot(tab, std::nullopt); }

void ComingFeatures::copyScreenshot(TabRef tab, std::optional<PageRect> rect) {
  if (tab)
    store_.services().scheduler.start(copyPicture(store_.weak_from_this(), tab, rect)).detach();
}

void ComingFeatures::startMediaMonitoring() {
  mediaLoop_ = store_.services().scheduler.start(mediaLoop(store_.weak_from_this()));
}

// Tabs

void ComingFeatures::closeSplitView() {
  store_.animate(Spring::move, [this] { store_.activeSpace()->setSplit({}); });
  store_.scheduleSave();
}

void ComingFeatures::advanceTabSwitcher() {
  const auto space = store_.activeSpace();
  const TabRef selected = space->selectedTab();
  TabRef latest;
  for (const TabRef& tab : space->allTabs())
    if (tab != selected && tab->lastActiveAt &&
        (!latest || *tab->lastActiveAt > *latest->lastActiveAt))
      latest = tab;
  if (latest) store_.select(latest, space);
}

// Not there yet

void ComingFeatures::openPrivateWindow() {
  store_.showToast(_("Private windows aren’t available yet"));
}
void ComingFeatures::toggleReader() { store_.showToast(_("The reader isn’t available yet")); }
void ComingFeatures::splitWithRecentTab() { store_.showToast(_("Split view isn’t available yet")); }
void ComingFeatures::beginHidingItems(TabRef) {
  store_.showToast(_("Hiding items isn’t available yet"));
}
void ComingFeatures::endHidingItems() {}
void ComingFeatures::updateSpotlight() {}
bool ComingFeatures::openSpotlightItem(const std::string&) { return false; }

}  // namespace orvel
