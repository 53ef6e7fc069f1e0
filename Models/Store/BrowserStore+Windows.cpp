#include "Models/Store/BrowserStore.h"

// Links from other applications, little windows and peeks.
namespace orvel {

bool BrowserStore::openExternal(const URL& url) {
  std::vector<LinkRoute> routes = settings.linkRoutes.peek();
  std::erase_if(routes, [this](const LinkRoute& route) { return !spaceWithID(route.spaceID); });
  if (const LinkRoute* route = firstMatching(routes, url)) {
    openTab(url, {.in = spaceWithID(route->spaceID)});
    return true;
  }
  if (settings.externalLinks.peek() == ExternalLinks::CurrentSpace || !makeLittleWindow) {
    openTab(url);
    return true;
  }
  openLittleWindow(url);
  return false;
}

TabRef BrowserStore::openLittleWindow(const std::optional<URL>& url,
                                      std::shared_ptr<Profile> profile,
                                      std::optional<WebViewConfiguration> configuration,
                                      SchemeSource scheme) {
  if (!makeLittleWindow) {
    // The sidebar is saved: nothing private may stand in it.
    if (profile && profile->isPrivate) return nullptr;
    return openTab(url, {.in = profile ? spaceOn(*profile) : nullptr,
                         .configuration = std::move(configuration),
                         .schemeSource = scheme});
  }
  TabRef tab = BrowserTab::make(services_, {.profile = profile ? profile : activeSpace()->profile,
                                            .store = weak_from_this(),
                                            .url = url,
                                            .configuration = std::move(configuration),
                                            .schemeSource = scheme});
  littleWindows.push_back(makeLittleWindow(tab));
  tab->webView();
  return tab;
}

void BrowserStore::littleWindowDidClose(const LittleWindow& closed) {
  std::erase_if(littleWindows, [&](const auto& little) { return little.get() == &closed; });
}

std::shared_ptr<LittleWindow> BrowserStore::keyLittleWindow() const {
  for (const auto& little : littleWindows)
    if (little->isActive()) return little;
  return nullptr;
}

TabRef BrowserStore::commandTab() const {
  const auto little = keyLittleWindow();
  return little ? little->tab() : activeSpace()->selectedTab();
}

void BrowserStore::openPeek(const URL& url, TabRef from) { openTab(url, {.after = from}); }

void BrowserStore::closePeek() {
  const TabRef tab = peek.peek();
  if (!tab || isPeekExpanding.peek()) return;
  animate(
      Spring::quick, [this] { peek = nullptr; },
      [tab] {
        tab->isDiscarded = true;
        tab->teardown();
      });
  later([](BrowserStore& store) { store.focusWebView(); });
}

}  // namespace orvel
