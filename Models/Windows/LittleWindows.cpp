#include "Models/Windows/LittleWindows.h"

#include "Base/Texts.h"
#include "Models/Settings/Settings.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

bool LittleWindows::openExternal(const URL& url, SchemeSource scheme) {
  std::vector<LinkRoute> routes = store_.settings.linkRoutes.peek();
  std::erase_if(routes,
                [this](const LinkRoute& route) { return !store_.spaceWithID(route.spaceID); });
  if (const LinkRoute* route = firstMatching(routes, url)) {
    store_.openTab(url, {.in = store_.spaceWithID(route->spaceID), .schemeSource = scheme});
    return true;
  }
  if (store_.settings.externalLinks.peek() == ExternalLinks::CurrentSpace ||
      !store_.interface().hasLittleWindows()) {
    store_.openTab(url, {.schemeSource = scheme});
    return true;
  }
  openLittleWindow(url, nullptr, std::nullopt, scheme);
  return false;
}

TabRef LittleWindows::openLittleWindow(const std::optional<URL>& url,
                                       std::shared_ptr<Profile> profile,
                                       std::optional<WebViewConfiguration> configuration,
                                       SchemeSource scheme) {
  Interface& interface = store_.interface();
  if (!interface.hasLittleWindows()) {
    // The sidebar is saved: nothing private may stand in it.
    if (profile && profile->isPrivate) return nullptr;
    return store_.openTab(url, {.in = profile ? store_.spaceOn(*profile) : nullptr,
                                .configuration = std::move(configuration),
                                .schemeSource = scheme});
  }
  TabRef tab = BrowserTab::make(store_.services(),
                                {.profile = profile ? profile : store_.activeSpace()->profile,
                                 .host = store_.tabHost(),
                                 .url = url,
                                 .configuration = std::move(configuration),
                                 .schemeSource = scheme});
  windows_.push_back(interface.makeLittleWindow(tab));
  tab->webView();
  return tab;
}

void LittleWindows::newLittleWindow() {
  if (store_.interface().hasLittleWindows())
    openLittleWindow(std::nullopt);
  else
    store_.showToast(_("Little windows aren’t available yet"));
}

void LittleWindows::littleWindowDidClose(const LittleWindow& closed) {
  std::erase_if(windows_, [&](const auto& little) { return little.get() == &closed; });
}

std::shared_ptr<LittleWindow> LittleWindows::keyLittleWindow() const {
  for (const auto& little : windows_)
    if (little->isActive()) return little;
  return nullptr;
}

std::shared_ptr<LittleWindow> LittleWindows::windowOf(const BrowserTab& tab) const {
  for (const auto& little : windows_)
    if (little->tab().get() == &tab) return little;
  return nullptr;
}

}  // namespace orvel
