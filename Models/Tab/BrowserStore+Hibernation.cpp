#include "Base/Assert.h"
#include "Models/Store/BrowserStore.h"

// Giving up the web views of tabs that nobody looks at, and keeping the pages' states on the disk.
namespace orvel {

void BrowserStore::startHibernating() {
  loops_.push_back(services_.scheduler.start(hibernationLoop(weak_from_this())));
  memoryPressure_ = services_.desktop.memoryPressure.observe([weak = weak_from_this()] {
    const auto store = weak.lock();
    if (!store) return;
    Scheduler& scheduler = store->services_.scheduler;
    scheduler.start(store->hibernateIdleTabs(Duration::zero(), scheduler.now())).detach();
  });
}

Task<> BrowserStore::hibernationLoop(std::weak_ptr<BrowserStore> weak) {
  constexpr Duration kInterval = 300s;
  constexpr Duration kIdleAge = 1800s;
  for (;;) {
    co_await sleep(kInterval, SleepClock::Boot);
    auto store = weak.lock();
    if (!store) co_return;
    Task<> pass = store->hibernateIdleTabs(kIdleAge, store->services_.scheduler.now());
    store.reset();
    co_await std::move(pass);
    store = weak.lock();
    if (!store) co_return;
    store->saveTabStates(StateWriting::Background);
  }
}

Task<> BrowserStore::hibernateIdleTabs(Duration age, Date now) {
  return hibernate(weak_from_this(), age, now);
}

bool BrowserStore::isOnShow(const BrowserTab& tab) const {
  const auto space = activeSpace();
  return space->selectedTab().get() == &tab || peek.peek().get() == &tab || space->isInSplit(tab);
}

bool BrowserStore::mayHibernate(const BrowserTab& tab, Date cutoff, Date now) const {
  const auto view = tab.liveWebView();
  return view && !isOnShow(tab) && tab.lastActiveAt.value_or(now) <= cutoff &&
         view->cameraCaptureState() == CaptureState::None &&
         view->microphoneCaptureState() == CaptureState::None;
}

Task<> BrowserStore::hibernate(std::weak_ptr<BrowserStore> weak, Duration age, Date now) {
  TabList tabs;
  if (const auto store = weak.lock()) tabs = store->everyTab();
  for (const TabRef& tab : tabs) {
    {
      const auto store = weak.lock();
      if (!store) co_return;
      if (!store->mayHibernate(*tab, now - age, now)) continue;
    }
    auto [answer, resolve] = makeFuture<MediaPlaybackState>();
    tab->liveWebView()->requestMediaPlaybackState(resolve);
    const MediaPlaybackState media = co_await std::move(answer);
    if (media == MediaPlaybackState::Playing) continue;
    // The user may have come back meanwhile.
    const auto store = weak.lock();
    if (!store) co_return;
    if (store->isOnShow(*tab) || !tab->liveWebView()) continue;
    tab->hibernate();
  }
}

// Page states

void BrowserStore::saveTabStates(StateWriting writing) {
  requireMainThread();
  untracked([this] { pageStates_.writeAll(everyTab()); });
  const auto found = std::make_shared<std::vector<std::string>>();
  auto list = [found, folder = services_.paths.tabStates(), &files = services_.files.files()] {
    *found = files.list(folder);
  };
  auto remove = [found, weak = weak_from_this()] {
    if (const auto store = weak.lock()) store->pageStates_.removeOthers(*found, store->everyTab());
  };
  if (writing == StateWriting::Background)
    return services_.scheduler.runInBackground(std::move(list), std::move(remove),
                                               WorkPriority::Utility);
  list();
  remove();
}

}  // namespace orvel
