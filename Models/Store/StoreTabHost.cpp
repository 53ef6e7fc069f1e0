#include "Models/Store/StoreTabHost.h"

#include <cmath>
#include <utility>

#include "Models/Downloads/Downloads.h"
#include "Models/Settings/Settings.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Tab/PageFullscreen.h"
#include "Models/Tab/Peek.h"
#include "Models/Windows/LittleWindows.h"
#include "WebEngine/Blocking/ContentBlocker.h"
#include "WebEngine/ExtensionHost.h"

namespace orvel {

void StoreTabHost::scheduleSave() { store_.scheduleSave(); }

void StoreTabHost::showToast(std::string message, ToastOptions options) {
  store_.showToast(std::move(message), std::move(options));
}

DesktopWindow* StoreTabHost::window() { return store_.window(); }

Settings* StoreTabHost::settings() { return &store_.settings; }

// Pages

std::shared_ptr<UserContentController> StoreTabHost::makeUserContentController() {
  return store_.contentBlocker.makeUserContentController();
}

void StoreTabHost::whenReadyToLoad(std::function<void()> load) {
  if (store_.contentBlocker.holdsFirstLoads())
    store_.contentBlocker.readyHandlers.push_back(std::move(load));
  else
    load();
}

void StoreTabHost::willNavigate(UserContentController& controller, const URL& address) {
  // Before the page's first request, so that a pause is in force when it starts.
  store_.contentBlocker.setCurrentSite(controller, ContentBlocker::site(address));
  store_.contentBlocker.install(controller);
}

void StoreTabHost::didCommit(BrowserTab& tab) {
  if (store_.coming.hidingItemsTabID.peek() == tab.id) store_.coming.endHidingItems();
}

void StoreTabHost::didDownloadFirstPage(BrowserTab& tab) {
  // Its view is in the middle of telling so.
  store_.later([this, closing = tab.shared_from_this()] { store_.downloads.closeEmpty(closing); });
}

double StoreTabHost::zoom(const std::optional<URL>& address) const {
  return store_.settings.zoom(address);
}

void StoreTabHost::didZoom(BrowserTab& tab, double zoom) {
  if (!tab.profile->isPrivate) store_.settings.setZoom(zoom, tab.url.peek());
  if (store_.activeSpace()->selectedTab().get() == &tab)
    store_.showToast(std::to_string(std::lround(zoom * 100)) + "%", {.symbol = "magnifyingglass"});
}

void StoreTabHost::recordVisit(const BrowserTab& tab, const URL& address,
                               const std::string& title) {
  if (tab.profile->isPrivate) return;
  store_.services().scheduler.post(store_.whileAlive(
      [this, profile = tab.profile->id, address, title, now = store_.services().scheduler.now()] {
        if (store_.history) store_.history->recordVisit(profile, address, title, now);
      }));
}

void StoreTabHost::nameVisit(const BrowserTab& tab, const URL& address, const std::string& title) {
  if (tab.profile->isPrivate) return;
  store_.services().scheduler.post(
      store_.whileAlive([this, profile = tab.profile->id, address, title] {
        if (store_.history) store_.history->setTitle(profile, address, title);
      }));
}

void StoreTabHost::showPageMenu(BrowserTab& tab, const PageHit& hit) {
  store_.interface().showPageMenu(tab.shared_from_this(), hit);
}

void StoreTabHost::fullscreenDidChange(BrowserTab& tab, bool isFullscreen) {
  store_.pageFullscreen.didChange(tab.shared_from_this(), isFullscreen);
}

void StoreTabHost::willTearDown(BrowserTab& tab) {
  if (store_.pageFullscreen.tab.peek().get() == &tab) store_.pageFullscreen.leave();
}

// Extensions

std::optional<WebExtensionContext> StoreTabHost::extensionContext(const URL& address) {
  return store_.extensions.controller->extensionContextForURL(address);
}

void StoreTabHost::propertiesDidChange(BrowserTab& tab, TabProperties properties) {
  if (auto* controller = store_.extensionsKnowing(tab))
    controller->didChangeTabProperties(properties, tab);
}

// Other tabs

void StoreTabHost::openLink(const URL& address, BrowserTab& from, Selection selection) {
  const bool isSelected = selection == Selection::Selects;
  const TabRef opened =
      store_.openTab(address, {.after = from.shared_from_this(), .select = isSelected});
  if (!isSelected) backgroundLoads_.add(opened);
}

bool StoreTabHost::mayOpenWindows(const BrowserTab& tab, const std::string& site) const {
  return windowSites_.contains({tab.profile->id, site});
}

void StoreTabHost::allowWindows(const BrowserTab& tab, const std::string& site) {
  windowSites_.emplace(tab.profile->id, site);
}

TabRef StoreTabHost::openWindow(const std::optional<URL>& address, BrowserTab& opener,
                                const WebViewConfiguration& configuration) {
  if (opener.profile->isPrivate)
    return store_.littleWindows.openLittleWindow(std::nullopt, opener.profile, configuration);
  return store_.openTab(address,
                        {.after = opener.shared_from_this(), .configuration = configuration});
}

bool StoreTabHost::canPeek(const BrowserTab& tab) const {
  return !tab.profile->isPrivate && store_.peek.tab.peek().get() != &tab;
}

bool StoreTabHost::peeksLinks(const BrowserTab& tab) const { return store_.peek.peeksLinks(tab); }

void StoreTabHost::openPeek(const URL& address, BrowserTab& from) {
  store_.peek.openPeek(address, from.shared_from_this());
}

void StoreTabHost::select(BrowserTab& tab) { store_.select(tab.shared_from_this()); }

void StoreTabHost::close(BrowserTab& tab) { store_.close(tab.shared_from_this()); }

}  // namespace orvel
