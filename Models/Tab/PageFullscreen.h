#pragma once

#include "Base/Published.h"
#include "Models/Spaces/Space.h"

namespace orvel {

class BrowserStore;

// The page of which an element fills the screen. The window then shows that page alone, and is
// given back as it was when the element, or the tab, leaves.
class PageFullscreen {
 public:
  explicit PageFullscreen(BrowserStore& store) : store_(store) {}

  // Null: none.
  Published<TabRef, PageFullscreen> tab;

  // The engine tells that an element took or left the screen.
  void didChange(const TabRef& of, bool isFullscreen);
  // The tab is no longer on screen.
  void leave();

 private:
  BrowserStore& store_;
  bool wasWindowFullscreen_ = false;
};

}  // namespace orvel
