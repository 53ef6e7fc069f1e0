#include "Models/Tab/PageFullscreen.h"

#include <utility>

#include "Models/Store/BrowserStore.h"

namespace orvel {

void PageFullscreen::didChange(const TabRef& of, bool isFullscreen) {
  if (!isFullscreen) {
    if (tab.peek() == of) tab = nullptr;
    return;
  }
  if (!tab.peek()) wasWindowFullscreen_ = store_.window && store_.window->isFullscreen();
  tab = of;
}

void PageFullscreen::leave() {
  const TabRef left = tab.peek();
  if (!left) return;
  tab = nullptr;
  if (const auto view = left->liveWebView()) view->exitFullscreen();
  if (store_.window && store_.window->isFullscreen() && !wasWindowFullscreen_)
    store_.window->toggleFullscreen();
}

}  // namespace orvel
