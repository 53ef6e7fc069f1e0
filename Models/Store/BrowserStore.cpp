#include "Models/Store/BrowserStore.h"

#include <unordered_set>

#include "Base/Assert.h"
#include "Base/Texts.h"
#include "Models/CommandBar/PickedChoices.h"
#include "Models/Commands/CommandList.h"
#include "Models/Commands/CommandTarget.h"
#include "Models/Commands/QuickBar.h"
#include "Models/Downloads/Downloads.h"
#include "Models/Settings/BlockingSwitches.h"
#include "Models/Settings/Settings.h"
#include "Models/Settings/SiteSettings.h"
#include "Models/Sidebar/CopiedLink.h"
#include "Models/Sidebar/Folders.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwipe.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/Archive.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Store/SessionFile.h"
#include "Models/Store/StoreTabHost.h"
#include "Models/Tab/Hibernation.h"
#include "Models/Tab/PageClosing.h"
#include "Models/Tab/PageFullscreen.h"
#include "Models/Tab/PageSearch.h"
#include "Models/Tab/Peek.h"
#include "Models/Windows/LittleWindows.h"
#include "Models/Windows/Toasts.h"
#include "Models/Windows/WindowChrome.h"
#include "WebEngine/Blocking/ContentBlocker.h"
#include "WebEngine/ExtensionHost.h"

namespace orvel {

namespace {

Interface& withoutInterface() {
  static Interface none;
  return none;
}

Task<> reopenExtensionPages(std::shared_ptr<BrowserStore> store) {
  co_await store->extensions.loadInstalled();
  for (const TabRef& tab : store->everyTab()) tab->reopenExtensionPage();
}

Task<> runLater(std::weak_ptr<BrowserStore> weak, std::function<void()> action) {
  if (const auto store = weak.lock()) action();
  co_return;
}

Task<> runAfter(std::weak_ptr<BrowserStore> weak, Duration delay, std::function<void()> action) {
  const SleepResult slept = co_await sleep(delay);
  const auto store = weak.lock();
  if (!store || slept == SleepResult::Cancelled) co_return;
  const bool wasCancelled = co_await isCancelled();
  if (!wasCancelled) action();
}

}  // namespace

// Each topic with the store that it is a part of.
struct BrowserStore::Topics {
  Topics(BrowserStore& of, const Services& services)
      : store(of),
        settings(services.defaults),
        contentBlocker(services.scheduler, services.engine, services.defaults, services.filterLists,
                       services.resources / "Scripts") {}

  BrowserStore& store;
  SessionFile session{store};
  Archive archive{store};
  WindowChrome chrome{store};
  Toasts toasts{store};
  LittleWindows littleWindows{store};
  SpaceEditing spaceEditing{store};
  SpaceSwitching switching{store};
  SpaceSwipe spaceSwipe{store};
  Folders folders{store};
  Downloads downloads{store};
  CopiedLink copiedLink{store};
  CommandList commands{store};
  CommandTarget target{store};
  QuickBar quickBar{store};
  PickedChoices choices{store};
  PageSearch pageSearch{store};
  PageClosing pageClosing{store};
  PageFullscreen pageFullscreen{store};
  Peek peek{store};
  Hibernation hibernation{store};
  BlockingSwitches blocking{store};
  SiteSettings siteSettings{store};
  ComingFeatures coming{store};
  StoreTabHost tabHost{store};
  Settings settings;
  ContentBlocker contentBlocker;
  ExtensionHost extensions;
};

std::shared_ptr<BrowserStore> BrowserStore::make(const Services& services) {
  requireMainThread();
  std::shared_ptr<BrowserStore> store(new BrowserStore(services));
  store->start();
  return store;
}

BrowserStore::BrowserStore(const Services& services)
    : services_(services),
      topics_(std::make_unique<Topics>(*this, services)),
      session(topics_->session),
      archive(topics_->archive),
      chrome(topics_->chrome),
      toasts(topics_->toasts),
      littleWindows(topics_->littleWindows),
      spaceEditing(topics_->spaceEditing),
      switching(topics_->switching),
      spaceSwipe(topics_->spaceSwipe),
      folders(topics_->folders),
      downloads(topics_->downloads),
      copiedLink(topics_->copiedLink),
      commands(topics_->commands),
      target(topics_->target),
      quickBar(topics_->quickBar),
      choices(topics_->choices),
      pageSearch(topics_->pageSearch),
      pageClosing(topics_->pageClosing),
      pageFullscreen(topics_->pageFullscreen),
      peek(topics_->peek),
      hibernation(topics_->hibernation),
      blocking(topics_->blocking),
      siteSettings(topics_->siteSettings),
      coming(topics_->coming),
      settings(topics_->settings),
      contentBlocker(topics_->contentBlocker),
      extensions(topics_->extensions),
      interface_(&withoutInterface()) {
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
  session.restore();
  choices.restore();
  archive.startArchiving();
  hibernation.startHibernating();
  coming.startMediaMonitoring();
  spaceSwipe.install();
  downloads.start();
}

// Profiles and spaces

void BrowserStore::setProfiles(std::vector<std::shared_ptr<Profile>> members) {
  profiles = std::move(members);
}

void BrowserStore::setSpaces(std::vector<std::shared_ptr<Space>> ordered) {
  spaces = std::move(ordered);
}

void BrowserStore::setActiveSpaceID(const UUID& id) {
  if (!activeSpaceID.set(id)) return;
  chrome.updateWindowAppearance();
  if (pageFullscreen.tab.peek() != activeSpace()->selectedTab()) pageFullscreen.leave();
}

std::shared_ptr<Space> BrowserStore::spaceWithID(const UUID& id) const {
  for (const auto& space : spaces.get())
    if (space->id == id) return space;
  return nullptr;
}

std::shared_ptr<Space> BrowserStore::activeSpace() const {
  if (auto space = spaceWithID(activeSpaceID)) return space;
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

std::weak_ptr<TabHost> BrowserStore::tabHost() {
  return std::shared_ptr<TabHost>(shared_from_this(), &topics_->tabHost);
}

// Windows

void BrowserStore::setInterface(Interface* interface) {
  interface_ = interface ? interface : &withoutInterface();
}

void BrowserStore::showUtilityWindow(UtilityWindow which) {
  if (interface_->openUtilityWindow(which)) return;
  switch (which) {
    case UtilityWindow::About:
    case UtilityWindow::Settings:
    case UtilityWindow::History:
      return;
    case UtilityWindow::BugReport:
      return showToast(_("Reporting a bug isn’t available yet"));
  }
}

void BrowserStore::focusWebView() {
  services_.scheduler.post(whileAlive([this] { focusWebViewNow(); }));
}

void BrowserStore::focusWebViewNow() {
  if (window() && window()->isTextEditorFocused()) return;
  const TabRef selected = activeSpace()->selectedTab();
  if (!selected) return;
  if (selected->questions.current.peek())
    selected->questions.calls = selected->questions.calls.peek() + 1;
  else if (const auto view = selected->liveWebView())
    view->focus();
}

// What nearly every topic calls

void BrowserStore::showToast(std::string message, ToastOptions options) {
  toasts.showToast(std::move(message), std::move(options));
}

void BrowserStore::scheduleSave() { session.scheduleSave(); }

void BrowserStore::animate(const Spring& spring, const std::function<void()>& change,
                           std::function<void()> completion) {
  if (completion) completion = whileAlive(std::move(completion));
  services_.desktop.animator.animate(spring, change, std::move(completion));
}

void BrowserStore::later(std::function<void()> action) {
  services_.scheduler.start(runLater(weak_from_this(), std::move(action))).detach();
}

TaskHandle BrowserStore::after(Duration delay, std::function<void()> action) {
  return services_.scheduler.start(runAfter(weak_from_this(), delay, std::move(action)));
}

}  // namespace orvel
