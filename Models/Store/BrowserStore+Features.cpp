#include "Models/Store/BrowserStore.h"

// What the commands ask of features that have no topic of their own, or are not there yet.
namespace orvel {

void BrowserStore::showUtilityWindow(UtilityWindow which) {
  if (openUtilityWindow && openUtilityWindow(which)) return;
  switch (which) {
    case UtilityWindow::About:
    case UtilityWindow::Settings:
    case UtilityWindow::History:
      return;
    case UtilityWindow::BugReport:
      return showToast("Reporting a bug isn’t available yet");
  }
}

void BrowserStore::openDownloadsFolder() {
  services_.desktop.workspace.openFile(services_.paths.downloads,
                                       [weak = weak_from_this()](bool isOpened) {
                                         const auto store = weak.lock();
                                         if (store && !isOpened)
                                           store->showToast("The downloads folder can’t be opened");
                                       });
}

// Pictures

void BrowserStore::beginCapture(TabRef tab) { copyScreenshot(tab, std::nullopt); }

void BrowserStore::copyScreenshot(TabRef tab, std::optional<PageRect> rect) {
  if (tab) services_.scheduler.start(copyPicture(weak_from_this(), tab, rect)).detach();
}

Task<> BrowserStore::copyPicture(std::weak_ptr<BrowserStore> weak, TabRef tab,
                                 std::optional<PageRect> rect) {
  Task<ImageRef> drawing = tab->screenshot(rect);
  const ImageRef image = co_await std::move(drawing);
  const auto store = weak.lock();
  if (!store || !image) co_return;
  store->services_.desktop.clipboard.setImage(image);
  store->showToast("Capture copied", {.symbol = "camera.viewfinder"});
}

// Tabs

void BrowserStore::closeSplitView() {
  animate(Spring::move, [this] { activeSpace()->setSplit({}); });
  scheduleSave();
}

void BrowserStore::advanceTabSwitcher() {
  const auto space = activeSpace();
  const TabRef selected = space->selectedTab();
  TabRef latest;
  for (const TabRef& tab : space->allTabs())
    if (tab != selected && tab->lastActiveAt &&
        (!latest || *tab->lastActiveAt > *latest->lastActiveAt))
      latest = tab;
  if (latest) select(latest, space);
}

// Not there yet

void BrowserStore::newLittleWindow() {
  if (makeLittleWindow)
    openLittleWindow(std::nullopt);
  else
    showToast("Little windows aren’t available yet");
}

void BrowserStore::openPrivateWindow() { showToast("Private windows aren’t available yet"); }
void BrowserStore::toggleReader() { showToast("The reader isn’t available yet"); }
void BrowserStore::splitWithRecentTab() { showToast("Split view isn’t available yet"); }
void BrowserStore::beginHidingItems(TabRef) { showToast("Hiding items isn’t available yet"); }
void BrowserStore::checkForUpdates() { showToast("Checking for updates isn’t available yet"); }

}  // namespace orvel
