#pragma once

#include <set>
#include <string>
#include <utility>

#include "Models/Tab/BackgroundLoads.h"
#include "Models/Tab/TabHost.h"

namespace orvel {

class BrowserStore;

// The surroundings of every tab that the store has made.
class StoreTabHost final : public TabHost {
 public:
  explicit StoreTabHost(BrowserStore& store) : store_(store) {}

  void scheduleSave() override;
  void showToast(std::string message, ToastOptions options) override;
  DesktopWindow* window() override;
  Settings* settings() override;
  std::shared_ptr<UserContentController> makeUserContentController() override;
  void whenReadyToLoad(std::function<void()> load) override;
  void willNavigate(UserContentController& controller, const URL& address) override;
  void didCommit(BrowserTab& tab) override;
  void didDownloadFirstPage(BrowserTab& tab) override;
  double zoom(const std::optional<URL>& address) const override;
  void didZoom(BrowserTab& tab, double zoom) override;
  void recordVisit(const BrowserTab& tab, const URL& address, const std::string& title) override;
  void nameVisit(const BrowserTab& tab, const URL& address, const std::string& title) override;
  void showPageMenu(BrowserTab& tab, const PageHit& hit) override;
  void fullscreenDidChange(BrowserTab& tab, bool isFullscreen) override;
  void willTearDown(BrowserTab& tab) override;
  std::optional<WebExtensionContext> extensionContext(const URL& address) override;
  void propertiesDidChange(BrowserTab& tab, TabProperties properties) override;
  void openLink(const URL& address, BrowserTab& from, Selection selection) override;
  bool mayOpenWindows(const BrowserTab& tab, const std::string& site) const override;
  void allowWindows(const BrowserTab& tab, const std::string& site) override;
  TabRef openWindow(const std::optional<URL>& address, BrowserTab& opener,
                    const WebViewConfiguration& configuration) override;
  bool canPeek(const BrowserTab& tab) const override;
  bool peeksLinks(const BrowserTab& tab) const override;
  void openPeek(const URL& address, BrowserTab& from) override;
  void select(BrowserTab& tab) override;
  void close(BrowserTab& tab) override;

 private:
  BrowserStore& store_;
  BackgroundLoads backgroundLoads_{store_};
  // By profile.
  std::set<std::pair<UUID, std::string>> windowSites_;
};

}  // namespace orvel
