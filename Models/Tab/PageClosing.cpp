#include "Models/Tab/PageClosing.h"

#include <utility>

#include "Models/Store/BrowserStore.h"

namespace orvel {

using Answer = BrowserTab::CloseAnswer;

void PageClosing::close(TabRef tab) {
  if (!asked_.insert(tab).second) return;
  tab->requestClose([weak = store_.weak_from_this(), tab](Answer answer) {
    const auto store = weak.lock();
    if (!store) return;
    store->pageClosing.asked_.erase(tab);
    if (answer != Answer::Stay) store->close(tab);
  });
}

void PageClosing::clearToday(std::shared_ptr<Space> space) {
  if (askedToClear_) return store_.select(askedToClear_);
  store_.services().scheduler.start(clearAfterAsking(store_.weak_from_this(), space)).detach();
}

Task<> PageClosing::clearAfterAsking(std::weak_ptr<BrowserStore> weak,
                                     std::shared_ptr<Space> space) {
  const auto store = weak.lock();
  if (!store) co_return;
  TabList leaving;
  for (const TabRef& tab : TabList(space->today.peek())) {
    if (store->pageClosing.asked_.contains(tab)) continue;
    auto [future, resolve] = makeFuture<Answer>();
    store->pageClosing.askedToClear_ = tab;
    tab->requestClose(resolve);
    const Answer answer = co_await std::move(future);
    store->pageClosing.askedToClear_ = nullptr;
    if (answer != Answer::Stay) leaving.push_back(tab);
  }
  store->clearToday(space, leaving);
}

void PageClosing::quit() {
  if (askedToQuit_) return store_.select(askedToQuit_);
  store_.services().scheduler.start(quitAfterAsking(store_.weak_from_this())).detach();
}

Task<> PageClosing::quitAfterAsking(std::weak_ptr<BrowserStore> weak) {
  const auto store = weak.lock();
  if (!store) co_return;
  for (const TabRef& tab : store->everyTab()) {
    auto [future, resolve] = makeFuture<Answer>();
    store->pageClosing.askedToQuit_ = tab;
    tab->requestClose(resolve);
    const Answer answer = co_await std::move(future);
    store->pageClosing.askedToQuit_ = nullptr;
    if (answer == Answer::Leave) break;
    if (answer == Answer::Stay) co_return;
  }
  store->services().desktop.application.terminate();
}

}  // namespace orvel
