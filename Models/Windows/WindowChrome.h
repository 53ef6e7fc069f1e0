#pragma once

#include "Base/Published.h"
#include "Base/Task.h"
#include "BrowserCore/Session/SessionRecord.h"

namespace orvel {

class BrowserStore;

// The frame of the main window: the sidebar, the window's buttons and its appearance.
class WindowChrome {
 public:
  explicit WindowChrome(BrowserStore& store) : store_(store) {}

  Published<bool, WindowChrome> isSidebarVisible = true;
  Published<bool, WindowChrome> isSidebarPeeking = false;  // hidden, and floating out over the page
  Published<double, WindowChrome> sidebarWidth = SessionRecord::kDefaultSidebarWidth;  // in points
  // The coming toggle of the sidebar starts from a peeking one.
  Published<bool, WindowChrome> sidebarDocksFromPeek = false;

  enum class Motion { AtOnce, Animated };
  // As a former run left it.
  void restoreSidebar(bool isVisible, double width);
  void toggleSidebar();
  void setSidebarPeeking(bool wanted);
  void setSidebarWidth(double width);
  void updateWindowChrome(Motion motion);
  void updateWindowAppearance();

 private:
  bool areWindowButtonsHidden() const;

  BrowserStore& store_;
  TaskHandle peeking_;
};

}  // namespace orvel
