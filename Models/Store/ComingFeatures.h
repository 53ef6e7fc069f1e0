#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Base/Observable.h"
#include "Base/Task.h"
#include "BrowserCore/Addresses/URL.h"
#include "Engine/WebView.h"
#include "Models/Spaces/Profile.h"

namespace orvel {

class BrowserStore;

// The article on show in the reader.
struct ReaderArticle {
  UUID id = UUID::random();
  UUID tabID;
  std::string title;
  std::optional<std::string> byline;
  std::optional<std::string> siteName;
  std::string content;  // markup
  std::optional<URL> baseURL;

  friend bool operator==(const ReaderArticle&, const ReaderArticle&) = default;
};

// The open tab switcher.
struct TabSwitcherState {
  std::vector<UUID> tabIDs;  // the most recently used first
  size_t index = 0;          // the highlighted one

  friend bool operator==(const TabSwitcherState&, const TabSwitcherState&) = default;
};

// The first pieces of features that are not built yet. Each moves to a class of its own when it is
// built, beside which this one empties.
class ComingFeatures {
 public:
  explicit ComingFeatures(BrowserStore& store) : store_(store) {}

  Observable<std::optional<ReaderArticle>> reader;
  Observable<std::optional<UUID>> capture;  // the tab being captured
  Observable<std::optional<TabSwitcherState>> tabSwitcher;
  Observable<std::optional<UUID>> hidingItemsTabID;

  // Ends what belongs to another tab than the one that is selected now.
  void didSelect(const UUID& tab);
  // Ends what belongs to the space that is left.
  void didLeaveSpace();

  // Each says by a toast that its feature is missing.
  void openPrivateWindow();
  void toggleReader();
  void splitWithRecentTab();
  void beginHidingItems(TabRef on);

  void endHidingItems();
  void closeSplitView();
  // Selects the tab that was used last before the selected one.
  void advanceTabSwitcher();
  // Copies the visible page.
  void beginCapture(TabRef tab);
  // Null tab and a page that cannot be drawn do nothing; absent `rect`: all that is visible.
  void copyScreenshot(TabRef tab, std::optional<PageRect> rect);
  // Asks the tabs that play, every ten seconds, whether they still do.
  void startMediaMonitoring();

  // A result of the desktop's search. Returns whether it was one of this program's.
  bool openSpotlightItem(const std::string& identifier);
  void updateSpotlight();

 private:
  BrowserStore& store_;
  TaskHandle mediaLoop_;
};

}  // namespace orvel
