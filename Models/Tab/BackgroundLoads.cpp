#include "Models/Tab/BackgroundLoads.h"

#include <algorithm>

#include "Models/Store/BrowserStore.h"

namespace orvel {

void BackgroundLoads::add(const TabRef& tab) {
  waiting_.push_back(tab);
  follow();
}

bool BackgroundLoads::isUnderWay(Load& load) {
  const auto tab = load.tab.lock();
  if (!tab || !tab->liveWebView()) return false;
  const bool isLoading = tab->isLoading.get();
  load.hasBegun |= isLoading;
  return isLoading || !load.hasBegun;
}

bool BackgroundLoads::isRoom() {
  const TabRef front = store_.activeSpace()->selectedTab();
  if (front && front->isLoading.get()) return false;
  size_t busy = 0;
  for (Load& load : loads_) busy += isUnderWay(load) ? 1 : 0;
  return busy < kMaxAtOnce;
}

// Until there is room.
void BackgroundLoads::follow() {
  effect_ = effect([this] {
    if (!waiting_.empty() && isRoom()) store_.later([this] { begin(); });
  });
}

void BackgroundLoads::begin() {
  untracked([this] {
    std::erase_if(loads_, [](Load& load) { return !isUnderWay(load); });
    while (!waiting_.empty() && isRoom()) {
      const TabRef tab = waiting_.front().lock();
      waiting_.erase(waiting_.begin());
      if (!tab || tab->isDiscarded.peek() || tab->liveWebView() || !tab->url.peek()) continue;
      loads_.push_back({tab});
      tab->webView();
    }
  });
  follow();
}

}  // namespace orvel
