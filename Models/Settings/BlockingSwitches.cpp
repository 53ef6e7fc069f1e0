#include "Models/Settings/BlockingSwitches.h"

#include "Models/Store/BrowserStore.h"

namespace orvel {

void BlockingSwitches::toggleContentBlocking() {
  const bool isOn = !store_.contentBlocker.isEnabled.peek();
  store_.contentBlocker.setEnabled(isOn);
  store_.showToast(isOn ? "Blocking ads & trackers" : "Ad & tracker blocking off");
  reloadSelectedTab();
}

void BlockingSwitches::toggleCookieRejection() {
  const bool isOn = !store_.contentBlocker.isCookieRejectionEnabled.peek();
  store_.contentBlocker.setCookieRejectionEnabled(isOn);
  store_.showToast(isOn ? "Rejecting cookie pop-ups" : "Cookie pop-up rejection off");
  reloadSelectedTab();
}

void BlockingSwitches::toggleBlockingOnCurrentSite(TabRef tab) {
  if (!tab) tab = store_.activeSpace()->selectedTab();
  const auto address = tab ? tab->url.peek() : std::nullopt;
  const auto site = address ? ContentBlocker::site(*address) : std::nullopt;
  if (!site) return;
  const bool isPaused = store_.contentBlocker.togglePause(*address);
  store_.showToast((isPaused ? "Blocking paused on " : "Blocking back on for ") + *site);
  reloadSelectedTab();
}

void BlockingSwitches::reloadSelectedTab() {
  if (const TabRef tab = store_.activeSpace()->selectedTab()) tab->reload();
}

}  // namespace orvel
