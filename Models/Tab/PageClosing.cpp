#include "Models/Tab/PageClosing.h"

#include <utility>

#include "Models/Store/BrowserStore.h"

namespace orvel {

using Answer = BrowserTab::CloseAnswer;

namespace {

Task<> quitAfterAsking(std::weak_ptr<BrowserStore> weak) {
  const auto store = weak.lock();
  if (!store) co_return;
  for (const TabRef& tab : store->everyTab()) {
    auto [future, resolve] = makeFuture<Answer>();
    store->pageClosing.willAskToQuit(tab);
    tab->requestClose(resolve);
    const Answer answer = co_await std::move(future);
    store->pageClosing.willAskToQuit(nullptr);
    if (answer == Answer::Leave) break;
    if (answer == Answer::Stay) co_return;
  }
  store->services().desktop.application.terminate();
}

}  // namespace

void PageClosing::close(TabRef tab) {
  if (!asked_.insert(tab).second) return;
  tab->requestClose(store_.whileAlive([this, tab](Answer answer) {
    asked_.erase(tab);
    if (answer != Answer::Stay) store_.close(tab);
  }));
}

void PageClosing::quit() {
  if (askedToQuit_) return store_.select(askedToQuit_);
  store_.services().scheduler.start(quitAfterAsking(store_.weak_from_this())).detach();
}

}  // namespace orvel
