#pragma once

#include <memory>

#include "Desktop/Windows.h"
#include "Engine/PageHit.h"
#include "Models/Spaces/Profile.h"
#include "Models/Windows/UtilityWindow.h"

namespace orvel {

// A window of one tab outside all spaces.
class LittleWindow {
 public:
  virtual ~LittleWindow() = default;
  virtual const TabRef& tab() const = 0;
  virtual bool isActive() const = 0;
  // Moves the tab to the sidebar.
  virtual void promote() = 0;
  // Ends the tab and tells the store.
  virtual void close() = 0;
};

// The windows that the model asks for. What this class answers by itself is what a program without
// an interface does.
class Interface {
 public:
  virtual ~Interface() = default;

  // The main window; null while there is none.
  virtual DesktopWindow* window() { return nullptr; }
  // Whether tabs may have windows of their own. Where they may not, they go to the sidebar.
  virtual bool hasLittleWindows() const { return false; }
  // Opens a little window for the tab. Called only where there are any; never null.
  virtual std::shared_ptr<LittleWindow> makeLittleWindow(const TabRef& /*tab*/) { return nullptr; }
  // Opens the menu of the tab's page (Models/Commands/PageMenu.h) where the tab is on screen.
  virtual void showPageMenu(const TabRef& /*tab*/, const PageHit& /*hit*/) {}
  // Shows the window; returns whether there is one.
  virtual bool openUtilityWindow(UtilityWindow /*which*/) { return false; }
};

}  // namespace orvel
