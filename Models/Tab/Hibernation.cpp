#include "Models/Tab/Hibernation.h"

#include "Base/Assert.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/Peek.h"

namespace orvel {

namespace {

Task<> hibernationLoop(std::weak_ptr<BrowserStore> weak) {
  constexpr Duration kInterval = 300s;
  constexpr Duration kIdleAge = 1800s;
  for (;;) {
    co_await sleep(kInterval, SleepClock::Boot);
    auto store = weak.lock();
    if (!store) co_return;
    Task<> pass = store->hibernation.hibernateIdleTabs(kIdleAge, store->services().scheduler.now());
    store.reset();
    co_await std::move(pass);
    store = weak.lock();
    if (!store) co_return;
    store->hibernation.saveTabStates(Hibernation::StateWriting::Background);
  }
}

Task<> hibernate(std::weak_ptr<BrowserStore> weak, Duration age, Date now) {
  TabList tabs;
  if (const auto store = weak.lock()) tabs = store->everyTab();
  for (const TabRef& tab : tabs) {
    {
      const auto store = weak.lock();
      if (!store) co_return;
      if (!store->hibernation.mayHibernate(*tab, now - age, now)) continue;
    }
    auto [answer, resolve] = makeFuture<MediaPlaybackState>();
    tab->liveWebView()->requestMediaPlaybackState(resolve);
    const MediaPlaybackState media = co_await std::move(answer);
    if (media == MediaPlaybackState::Playing) continue;
    // The user may have come back meanwhile.
    const auto store = weak.lock();
    if (!store) co_return;
    if (store->hibernation.isOnShow(*tab) || !tab->liveWebView()) continue;
    tab->hibernate();
  }
}

}  // namespace

Hibernation::Hibernation(BrowserStore& store)
    : store_(store), pageStates_(store.services().files, store.services().paths.tabStates()) {}

void Hibernation::startHibernating() {
  loop_ = store_.services().scheduler.start(hibernationLoop(store_.weak_from_this()));
  memoryPressure_ = store_.services().desktop.memoryPressure.observe(store_.whileAlive([this] {
    Scheduler& scheduler = store_.services().scheduler;
    scheduler.start(hibernateIdleTabs(Duration::zero(), scheduler.now())).detach();
  }));
}

Task<> Hibernation::hibernateIdleTabs(Duration age, Date now) {
  return hibernate(store_.weak_from_this(), age, now);
}

bool Hibernation::isOnShow(const BrowserTab& tab) const {
  const auto space = store_.activeSpace();
  return space->selectedTab().get() == &tab || store_.peek.tab.peek().get() == &tab ||
         space->isInSplit(tab);
}

bool Hibernation::mayHibernate(const BrowserTab& tab, Date cutoff, Date now) const {
  const auto view = tab.liveWebView();
  return view && !isOnShow(tab) && tab.lastActiveAt.value_or(now) <= cutoff &&
         view->cameraCaptureState() == CaptureState::None &&
         view->microphoneCaptureState() == CaptureState::None;
}

// Page states

void Hibernation::saveTabStates(StateWriting writing) {
  requireMainThread();
  untracked([this] { pageStates_.writeAll(store_.everyTab()); });
  const auto found = std::make_shared<std::vector<std::string>>();
  auto list = [found, folder = store_.services().paths.tabStates(),
               &files = store_.services().files.files()] { *found = files.list(folder); };
  auto remove =
      store_.whileAlive([this, found] { pageStates_.removeOthers(*found, store_.everyTab()); });
  if (writing == StateWriting::Background)
    return store_.services().scheduler.runInBackground(std::move(list), std::move(remove),
                                                       WorkPriority::Utility);
  list();
  remove();
}

void Hibernation::saveChangedStates() {
  untracked([this] { pageStates_.writeChanged(store_.everyTab()); });
}

}  // namespace orvel
