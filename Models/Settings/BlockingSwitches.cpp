#include "Models/Settings/BlockingSwitches.h"

#include "Base/Texts.h"
#include "Models/Store/BrowserStore.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel {

void BlockingSwitches::toggleContentBlocking() {
  const bool isOn = !store_.contentBlocker.isEnabled.peek();
  store_.contentBlocker.setEnabled(isOn);
  store_.showToast(isOn ? _("Blocking ads & trackers") : _("Ad & tracker blocking off"));
  reloadSelectedTab();
}

void BlockingSwitches::toggleCookieRejection() {
  const bool isOn = !store_.contentBlocker.isCookieRejectionEnabled.peek();
  store_.contentBlocker.setCookieRejectionEnabled(isOn);
  store_.showToast(isOn ? _("Rejecting cookie pop-ups") : _("Cookie pop-up rejection off"));
  reloadSelectedTab();
}

void BlockingSwitches::toggleBlockingOnCurrentSite(TabRef tab) {
  if (!tab) tab = store_.activeSpace()->selectedTab();
  const auto address = tab ? tab->url.peek() : std::nullopt;
  const auto site = address ? ContentBlocker::site(*address) : std::nullopt;
  if (!site) return;
  const bool isPaused = store_.contentBlocker.togglePause(*address);
  store_.showToast(
      filled(isPaused ? _("Blocking paused on {site}") : _("Blocking back on for {site}"),
             {{"site", *site}}));
  reloadSelectedTab();
}

void BlockingSwitches::reloadSelectedTab() {
  if (const TabRef tab = store_.activeSpace()->selectedTab()) tab->reload();
}

}  // namespace orvel
