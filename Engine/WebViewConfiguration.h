#pragma once

#include <memory>
#include <string>

#include "Engine/UserContent.h"
#include "Engine/WebsiteDataStore.h"

namespace orvel {

class WebView;

enum class HTTPSNavigationPolicy {
  KeepAsRequested = 0,
  // Every main-frame navigation tries https first and falls back to http by itself.
  AutomaticFallbackToHTTP = 1,
};

// What the engine ties to a window that a page opened: the opener's process and session.
class WindowOpener {
 public:
  virtual ~WindowOpener() = default;
};

// What a web view is made from. Values are read once, when the view is made.
struct WebViewConfiguration {
  // Null: a private store of the view's own.
  std::shared_ptr<WebsiteDataStore> websiteDataStore;
  // Null: a controller of the view's own.
  std::shared_ptr<UserContentController> userContentController;
  // Added to the engine's own user agent text.
  std::string applicationNameForUserAgent;
  bool isElementFullscreenEnabled = false;
  // Off: no script of a page runs; those of the program do.
  bool isPageJavaScriptEnabled = true;
  // Off: the timers of a page that nobody sees run as those of one on screen.
  bool areHiddenTimersSlowed = true;
  // A view whose process and store the new one shares; `websiteDataStore` counts for
  // nothing then.
  std::shared_ptr<WebView> processSharedWith;
  // Sub-resources and links of hosts known to serve https are upgraded.
  bool upgradesKnownHostsToHTTPS = false;
  HTTPSNavigationPolicy preferredHTTPSNavigationPolicy = HTTPSNavigationPolicy::KeepAsRequested;
  // Requests carry "Sec-GPC: 1" and pages read `navigator.globalPrivacyControl` as true.
  bool isGlobalPrivacyControlEnabled = false;
  // Set by the engine alone, in the configuration that it hands to `createWebView`.
  std::shared_ptr<WindowOpener> opener;
};

}  // namespace orvel
