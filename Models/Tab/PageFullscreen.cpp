#include "Models/Tab/PageFullscreen.h"

#include <utility>

#include "Models/Store/BrowserStore.h"

namespace orvel {

void PageFullscreen::didChange(const TabRef& of, bool isFullscreen) {
  if (!isFullscreen) {
    if (tab.peek() == of) tab = nullptr;
    return;
  }
  const DesktopWindow* window = store_.window();
  if (!tab.peek()) wasWindowFullscreen_ = window && window->isFullscreen();
  tab = of;
}

void PageFullscreen::leave() {
  const TabRef left = tab.peek();
  if (!left) return;
  tab = nullptr;
  if (const auto view = left->liveWebView()) view->exitFullscreen();
  DesktopWindow* window = store_.window();
  if (window && window->isFullscreen() && !wasWindowFullscreen_) window->toggleFullscreen();
}

}  // namespace orvel
