#include "Models/Store/BrowserStore.h"

#include "Base/Assert.h"
#include "Models/CommandBar/ChoicesFile.h"

namespace orvel {

std::shared_ptr<BrowserStore> BrowserStore::make(const Services& services) {
  requireMainThread();
  std::shared_ptr<BrowserStore> store(new BrowserStore(services));
  store->start();
  return store;
}

BrowserStore::BrowserStore(const Services& services)
    : settings(services.defaults),
      contentBlocker(services.scheduler, services.engine, services.defaults, services.filterLists,
                     services.resources / "Scripts"),
      services_(services),
      sessionFile_(services.files, services.paths.session()),
      pageStates_(services.files, services.paths.tabStates()) {
  services.paths.create(services.files.files());
  if (services.openHistory) history = services.openHistory(services.paths.history());
}

BrowserStore::~BrowserStore() {
  untracked([this] {
    for (const auto& profile : profiles.peek()) profile->favorites = TabList();
  });
}

void BrowserStore::start() {
  contentBlocker.start();
  services_.scheduler.start(reopenExtensionPages(shared_from_this())).detach();
  restore();
  if (const auto bytes = services_.files.files().read(services_.paths.choices()).bytes)
    choices = ChoicesFile::decode(*bytes).value_or(ChoicesFile::Choices());
  loops_.push_back(services_.scheduler.start(archiveLoop(weak_from_this())));
  startHibernating();
  startMediaMonitoring();
  installEscapeMonitor();
  installSplitFocusMonitor();
  installSpaceSwipeMonitor();
  installTabSwitcherMonitor();
  services_.engine.setDownloadDelegate(services_.downloads);
  services_.downloads->onFinish = [weak = weak_from_this()](const std::string& name) {
    if (const auto store = weak.lock()) store->showToast("Downloaded " + name);
  };
}

Task<> BrowserStore::reopenExtensionPages(std::shared_ptr<BrowserStore> store) {
  co_await store->extensions.loadInstalled();
  for (const TabRef& tab : store->everyTab()) tab->reopenExtensionPage();
}

Task<> BrowserStore::archiveLoop(std::weak_ptr<BrowserStore> weak) {
  constexpr Duration kInterval = 900s;
  for (;;) {
    {
      const auto store = weak.lock();
      if (!store) co_return;
      store->archiveStaleTabs(store->services_.scheduler.now());
    }
    const SleepResult result = co_await sleep(kInterval, SleepClock::Boot);
    if (result == SleepResult::Cancelled) co_return;
  }
}

// The media loop waits for one tab after the other, so that a slow page delays nobody but the rest.
Task<> BrowserStore::mediaLoop(std::weak_ptr<BrowserStore> weak) {
  constexpr Duration kInterval = 10s;
  for (;;) {
    const SleepResult result = co_await sleep(kInterval);
    if (result == SleepResult::Cancelled) co_return;
    TabList playing;
    {
      const auto store = weak.lock();
      if (!store) co_return;
      for (const TabRef& tab : store->everyTab())
        if (tab->isPlayingMedia) playing.push_back(tab);
    }
    for (const TabRef& tab : playing) co_await tab->refreshMediaState();
  }
}

void BrowserStore::startMediaMonitoring() {
  loops_.push_back(services_.scheduler.start(mediaLoop(weak_from_this())));
}

// Spaces

void BrowserStore::setActiveSpaceID(const UUID& id) {
  if (!activeSpaceID_.set(id)) return;
  updateWindowAppearance();
  if (pageFullscreen.tab.peek() != activeSpace()->selectedTab()) pageFullscreen.leave();
}

std::shared_ptr<Space> BrowserStore::spaceWithID(const UUID& id) const {
  for (const auto& space : spaces.get())
    if (space->id == id) return space;
  return nullptr;
}

std::shared_ptr<Space> BrowserStore::activeSpace() const {
  if (auto space = spaceWithID(activeSpaceID())) return space;
  require(!spaces.get().empty(), "there is always a space");
  return spaces.get().front();
}

TabList BrowserStore::everyTab() const {
  TabList tabs;
  std::unordered_set<const BrowserTab*> seen;
  for (const auto& space : spaces.get())
    for (TabRef& tab : space->allTabs())
      if (seen.insert(tab.get()).second) tabs.push_back(std::move(tab));
  return tabs;
}

// Small helpers of all topics

static Task<> runLater(std::weak_ptr<BrowserStore> weak,
                       std::function<void(BrowserStore&)> action) {
  if (const auto store = weak.lock()) action(*store);
  co_return;
}

void BrowserStore::later(std::function<void(BrowserStore&)> action) {
  services_.scheduler.start(runLater(weak_from_this(), std::move(action))).detach();
}

void BrowserStore::animate(const Spring& spring, const std::function<void()>& change,
                           std::function<void()> completion) {
  services_.desktop.animator.animate(spring, change, std::move(completion));
}

// Empty until their features are built

void BrowserStore::archiveStaleTabs(Date) {}
void BrowserStore::installEscapeMonitor() {}
void BrowserStore::installSplitFocusMonitor() {}
void BrowserStore::installTabSwitcherMonitor() {}
void BrowserStore::endHidingItems() {}
void BrowserStore::updateSpotlight() {}
void BrowserStore::orderQuickBarOut() {}
bool BrowserStore::peeksLinks(const BrowserTab&) const { return false; }
bool BrowserStore::openSpotlightItem(const std::string&) { return false; }

}  // namespace orvel
