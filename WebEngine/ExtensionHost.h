#pragma once

#include <memory>
#include <optional>

#include "Base/Task.h"
#include "BrowserCore/Addresses/URL.h"
#include "Engine/WebViewConfiguration.h"

namespace orvel {

// A tab as web extensions see it.
class WebExtensionTab {
 public:
  virtual ~WebExtensionTab() = default;
};

// What changed about a tab, as the bits of the extension protocol.
enum class TabProperties : unsigned { Title = 128, URL = 256 };

// A loaded extension.
struct WebExtensionContext {
  URL baseURL;
  // What the extension's own pages are made from; absent when it has none.
  std::optional<WebViewConfiguration> webViewConfiguration;
};

// Tells the loaded extensions of tabs, and answers for their addresses. Without extensions there is
// nobody to tell.
class WebExtensionController {
 public:
  virtual ~WebExtensionController() = default;
  virtual void didOpenTab(WebExtensionTab&) {}
  virtual void didCloseTab(WebExtensionTab&) {}
  virtual void didActivateTab(WebExtensionTab&, WebExtensionTab* /*previousActiveTab*/) {}
  virtual void didChangeTabProperties(TabProperties, WebExtensionTab&) {}
  // The extension that owns the address; absent when none does.
  virtual std::optional<WebExtensionContext> extensionContextForURL(const URL&) const {
    return std::nullopt;
  }
};

// The installed web extensions.
class ExtensionHost {
 public:
  std::unique_ptr<WebExtensionController> controller = std::make_unique<WebExtensionController>();

  // Loads what is installed; ends when every extension runs or has failed.
  Task<> loadInstalled();
};

}  // namespace orvel
