#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Engine/WebViewConfiguration.h"
#include "Models/Windows/Interface.h"

namespace orvel {

class BrowserStore;

// Tabs in windows of their own, and the links of other applications, which may open in one.
class LittleWindows {
 public:
  explicit LittleWindows(BrowserStore& store) : store_(store) {}

  const std::vector<std::shared_ptr<LittleWindow>>& windows() const { return windows_; }

  // Returns whether the main window is to come forward.
  bool openExternal(const URL& url, SchemeSource scheme = SchemeSource::Given);
  // Null profile: the active space's. Null when a private tab has no window to go to.
  TabRef openLittleWindow(const std::optional<URL>& url, std::shared_ptr<Profile> profile = nullptr,
                          std::optional<WebViewConfiguration> configuration = std::nullopt,
                          SchemeSource scheme = SchemeSource::Given);
  // Says by a toast that there are none, where there are none.
  void newLittleWindow();
  void littleWindowDidClose(const LittleWindow& closed);
  // Null when another window is key.
  std::shared_ptr<LittleWindow> keyLittleWindow() const;
  // The one that shows the tab; null without one.
  std::shared_ptr<LittleWindow> windowOf(const BrowserTab& tab) const;

 private:
  BrowserStore& store_;
  std::vector<std::shared_ptr<LittleWindow>> windows_;
};

}  // namespace orvel
