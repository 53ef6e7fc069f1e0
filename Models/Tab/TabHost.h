#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Desktop/Windows.h"
#include "Engine/PageHit.h"
#include "Engine/UserContent.h"
#include "Engine/WebViewConfiguration.h"
#include "Models/Spaces/Profile.h"
#include "Models/Windows/Toast.h"
#include "WebEngine/ExtensionHost.h"

namespace orvel {

class Settings;

// What a tab asks of its surroundings. What this class answers by itself is what a tab learns whose
// surroundings have gone.
class TabHost {
 public:
  virtual ~TabHost() = default;
  // The one without surroundings; never null.
  static const std::shared_ptr<TabHost>& nowhere();

  // What is saved of the tab has changed.
  virtual void scheduleSave() {}
  virtual void showToast(std::string /*message*/, ToastOptions /*options*/) {}
  // What the tab's panels stand over; null without one.
  virtual DesktopWindow* window() { return nullptr; }

  // What the user has chosen; null without a store.
  virtual Settings* settings() { return nullptr; }

  // Pages.
  // What a new view's pages are blocked by; null: nothing.
  virtual std::shared_ptr<UserContentController> makeUserContentController() { return nullptr; }
  // Calls `load` when the first page may be loaded, perhaps at once.
  virtual void whenReadyToLoad(std::function<void()> load) { load(); }
  // A main frame that `controller` blocks for goes to the address.
  virtual void willNavigate(UserContentController& /*controller*/, const URL& /*address*/) {}
  virtual void didCommit(BrowserTab& /*tab*/) {}
  // What was to be the first page of the tab's view is downloaded: the tab has nothing to show.
  virtual void didDownloadFirstPage(BrowserTab& /*tab*/) {}
  // 1 is actual size.
  virtual double zoom(const std::optional<URL>& /*address*/) const { return 1; }
  // The user has chosen a zoom.
  virtual void didZoom(BrowserTab& /*tab*/, double /*zoom*/) {}
  // On a later turn, in the order of the calls.
  virtual void recordVisit(const BrowserTab& /*tab*/, const URL& /*address*/,
                           const std::string& /*title*/) {}
  virtual void nameVisit(const BrowserTab& /*tab*/, const URL& /*address*/,
                         const std::string& /*title*/) {}
  virtual void showPageMenu(BrowserTab& /*tab*/, const PageHit& /*hit*/) {}
  virtual void fullscreenDidChange(BrowserTab& /*tab*/, bool /*isFullscreen*/) {}
  // The tab's view is going.
  virtual void willTearDown(BrowserTab& /*tab*/) {}

  // Extensions. None hears of a private tab.
  // Absent when the address is no extension's.
  virtual std::optional<WebExtensionContext> extensionContext(const URL& /*address*/) {
    return std::nullopt;
  }
  virtual void propertiesDidChange(BrowserTab& /*tab*/, TabProperties /*properties*/) {}

  // Other tabs.
  enum class Selection { Selects, StaysBehind };
  virtual void openLink(const URL& /*address*/, BrowserTab& /*from*/, Selection /*selection*/) {}
  // Whether pages of the site may open windows as they like; for the rest of this run, if so.
  virtual bool mayOpenWindows(const BrowserTab& /*tab*/, const std::string& /*site*/) const {
    return false;
  }
  virtual void allowWindows(const BrowserTab& /*tab*/, const std::string& /*site*/) {}
  // A window that the page opened, which the engine navigates by itself; null: it gets none.
  virtual TabRef openWindow(const std::optional<URL>& /*address*/, BrowserTab& /*opener*/,
                            const WebViewConfiguration& /*configuration*/) {
    return nullptr;
  }
  // Whether the tab's page may open links in a peek at all, and whether those to other sites do
  // without being asked to.
  virtual bool canPeek(const BrowserTab& /*tab*/) const { return false; }
  virtual bool peeksLinks(const BrowserTab& /*tab*/) const { return false; }
  virtual void openPeek(const URL& /*address*/, BrowserTab& /*from*/) {}
  virtual void select(BrowserTab& /*tab*/) {}
  // The page has closed itself.
  virtual void close(BrowserTab& /*tab*/) {}
};

}  // namespace orvel
