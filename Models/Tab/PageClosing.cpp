#include "Models/Tab/PageClosing.h"

#include <utility>

#include "Models/Downloads/Downloads.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

using Answer = PagePanels::CloseAnswer;

namespace {

Task<> clearAfterAsking(std::weak_ptr<BrowserStore> weak, std::shared_ptr<Space> space) {
  const auto store = weak.lock();
  if (!store) co_return;
  TabList leaving;
  for (const TabRef& tab : TabList(space->today.peek())) {
    if (store->pageClosing.isAsking(tab)) continue;
    auto [future, resolve] = makeFuture<Answer>();
    store->pageClosing.willAskToClear(tab);
    tab->panels.requestClose(resolve);
    const Answer answer = co_await std::move(future);
    store->pageClosing.willAskToClear(nullptr);
    if (answer != Answer::Stay) leaving.push_back(tab);
  }
  store->clearToday(space, leaving);
}

Task<> quitAfterAsking(std::weak_ptr<BrowserStore> weak, std::function<void()> stays) {
  const auto store = weak.lock();
  if (!store) co_return;
  for (const TabRef& tab : store->everyTab()) {
    auto [future, resolve] = makeFuture<Answer>();
    store->pageClosing.willAskToQuit(tab);
    tab->panels.requestClose(resolve);
    const Answer answer = co_await std::move(future);
    store->pageClosing.willAskToQuit(nullptr);
    if (answer == Answer::Leave) break;
    if (answer == Answer::Stay) {
      if (stays) stays();
      co_return;
    }
  }
  auto asking = store->downloads.mayQuit();
  const bool mayQuit = co_await std::move(asking);
  if (mayQuit)
    store->services().desktop.application.terminate();
  else if (stays)
    stays();
}

}  // namespace

void PageClosing::close(TabRef tab) {
  if (!asked_.insert(tab).second) {
    if (tab->questions.current.peek()) store_.select(tab);
    return;
  }
  tab->panels.requestClose(store_.whileAlive([this, tab](Answer answer) {
    asked_.erase(tab);
    if (answer != Answer::Stay) store_.close(tab);
  }));
}

void PageClosing::clearToday(std::shared_ptr<Space> space) {
  if (askedToClear_) return store_.select(askedToClear_);
  store_.services().scheduler.start(clearAfterAsking(store_.weak_from_this(), space)).detach();
}

void PageClosing::quit(std::function<void()> stays) {
  if (askedToQuit_) return store_.select(askedToQuit_);
  store_.services()
      .scheduler.start(quitAfterAsking(store_.weak_from_this(), std::move(stays)))
      .detach();
}

}  // namespace orvel
