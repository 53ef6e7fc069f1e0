#include "Models/Store/BrowserStore.h"

// What the user switches about blocking.
namespace orvel {

void BrowserStore::toggleContentBlocking() {
  const bool isOn = !contentBlocker.isEnabled.peek();
  contentBlocker.setEnabled(isOn);
  showToast(isOn ? "Blocking ads & trackers" : "Ad & tracker blocking off");
  reloadSelectedTab();
}

void BrowserStore::toggleCookieRejection() {
  const bool isOn = !contentBlocker.isCookieRejectionEnabled.peek();
  contentBlocker.setCookieRejectionEnabled(isOn);
  showToast(isOn ? "Rejecting cookie pop-ups" : "Cookie pop-up rejection off");
  reloadSelectedTab();
}

void BrowserStore::toggleBlockingOnCurrentSite(TabRef tab) {
  if (!tab) tab = activeSpace()->selectedTab();
  const auto address = tab ? tab->url.peek() : std::nullopt;
  const auto site = address ? ContentBlocker::site(*address) : std::nullopt;
  if (!site) return;
  const bool isPaused = contentBlocker.togglePause(*address);
  showToast((isPaused ? "Blocking paused on " : "Blocking back on for ") + *site);
  reloadSelectedTab();
}

void BrowserStore::reloadSelectedTab() {
  if (const TabRef tab = activeSpace()->selectedTab()) tab->reload();
}

}  // namespace orvel
