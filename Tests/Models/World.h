#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Models/Store/BrowserStore.h"
#include "Models/Store/SessionFile.h"
#include "Tests/Fakes/FakeDesktop.h"
#include "Tests/Fakes/FakeEngine.h"
#include "Tests/Fakes/FakeHTTPSession.h"
#include "Tests/Fakes/MemoryFileSystem.h"
#include "Tests/Fakes/VirtualScheduler.h"

namespace orvel::test {

inline URL address(const std::string& text) { return *URL::parse(text); }

// Writes down what the extensions were told, and of which tab.
class RecordingExtensions final : public WebExtensionController {
 public:
  explicit RecordingExtensions(std::vector<std::string>& log) : log_(log) {}
  void didOpenTab(WebExtensionTab& tab) override { log_.push_back("open " + name(tab)); }
  void didCloseTab(WebExtensionTab& tab) override { log_.push_back("close " + name(tab)); }
  void didActivateTab(WebExtensionTab& tab, WebExtensionTab* prior) override {
    log_.push_back("activate " + name(tab) + (prior ? " after " + name(*prior) : ""));
  }
  void didChangeTabProperties(TabProperties properties, WebExtensionTab& tab) override {
    log_.push_back((properties == TabProperties::Title ? "title " : "url ") + name(tab));
  }
  std::optional<WebExtensionContext> extensionContextForURL(const URL& url) const override {
    if (!url.hasScheme("webkit-extension") || !isLoaded) return std::nullopt;
    return WebExtensionContext{address("webkit-extension://one/"),
                               WebViewConfiguration{.applicationNameForUserAgent = "extension"}};
  }

  bool isLoaded = false;

 private:
  static std::string name(WebExtensionTab& given) {
    const auto& tab = dynamic_cast<BrowserTab&>(given);
    EXPECT_FALSE(tab.profile->isPrivate) << "extensions never hear of a private tab";
    return tab.url.peek() ? tab.url.peek()->text() : "nothing";
  }

  std::vector<std::string>& log_;
};

// An interface that has what a test gives it.
struct FakeInterface final : Interface {
  DesktopWindow* window() override { return shown; }
  bool hasLittleWindows() const override { return static_cast<bool>(makeLittle); }
  std::shared_ptr<LittleWindow> makeLittleWindow(const TabRef& tab) override {
    return makeLittle(tab);
  }
  bool openUtilityWindow(UtilityWindow which) override { return openUtility && openUtility(which); }

  DesktopWindow* shown = nullptr;
  std::function<std::shared_ptr<LittleWindow>(const TabRef&)> makeLittle;
  std::function<bool(UtilityWindow)> openUtility;
};

// One run of the program over a disk: all that the model stands on, and the store.
class World {
 public:
  explicit World(std::shared_ptr<MemoryFileSystem> given = std::make_shared<MemoryFileSystem>())
      : disk(std::move(given)) {}
  ~World() {
    store.reset();
    scheduler.settle();
  }

  World& launch() {
    defaults.setBoolean("contentBlockingEnabled", false);
    defaults.setNumber("filterListsLastChecked", 1e12);
    store = BrowserStore::make(services);
    store->setInterface(&interface);
    auto recorder = std::make_unique<RecordingExtensions>(told);
    extensions = recorder.get();
    store->extensions.controller = std::move(recorder);
    saved_ = present();
    return *this;
  }

  // A tab at the top of today's, selected or not.
  TabRef open(const std::string& url, bool isSelected = true) {
    return store->openTab(address(url), {.select = isSelected});
  }
  std::shared_ptr<FakeWebView> view(const TabRef& tab) const {
    return std::static_pointer_cast<FakeWebView>(tab->liveWebView());
  }
  // As a view of the tab that is on screen.
  std::shared_ptr<FakeWebView> viewOnScreen(const TabRef& tab) const {
    auto live = view(tab);
    live->isOnScreen = true;
    return live;
  }
  Space& space() const { return *store->activeSpace(); }
  std::string file(const std::string& name) const {
    return disk->read(services.paths.support / name, ~0ull).bytes.value_or("");
  }
  std::string sessionFile() const { return file("session.json"); }

  // What a save would write stands on the disk, or a save is on its way.
  void expectSaved() {
    if (!store || store->session.isSavePending() || present() == saved_) return;
    saved_ = present();
    EXPECT_EQ(sessionFile(), saved_) << "a change that is not saved";
  }
  // For tests that change the model behind its operations.
  void saveNow() {
    store->session.save();
    scheduler.settle();
  }

  std::shared_ptr<MemoryFileSystem> disk;
  VirtualScheduler scheduler;
  FakeEngine engine{scheduler};
  FakeDesktop desktop{scheduler};
  FakeWindow window;
  FakeInterface interface;
  FileWriter writer{scheduler, disk};
  FaviconStore favicons{*disk, "/data/Orvel/Favicons"};
  // No list is there and none is fetched; blocking is off, so that no first page waits.
  UserDefaults defaults;
  FilterListUpdater filterLists{
      scheduler, writer, defaults, {}, {disk, "/data/Orvel/Filters", "/share/Filters"}, {}};
  FakeNetwork network{scheduler};
  CurrencyFeed currencies{scheduler, writer, network.sessions(), "/data/Orvel/eurofxref.xml",
                          address("https://rates.test/daily.xml")};
  EngineSuggestions engineSuggestions{network.sessions()};
  std::vector<std::string> told;
  Services services{
      .scheduler = scheduler,
      .engine = engine,
      .desktop = desktop.desktop(),
      .files = writer,
      .paths = AppPaths::in("/data", "/cache", "/downloads"),
      .favicons = favicons,
      .defaults = defaults,
      .filterLists = filterLists,
      .currencies = currencies,
      .engineSuggestions = engineSuggestions,
      .resources = "/share",
      .downloads = std::make_shared<DownloadManager>(*disk, desktop, "/downloads"),
      .openHistory = [this](const auto&) { return HistoryStore::open(scheduler, ":memory:"); }};
  RecordingExtensions* extensions = nullptr;
  std::shared_ptr<BrowserStore> store;

 private:
  std::string present() const {
    return untracked([this] { return store->session.record().encoded(); });
  }

  std::string saved_;
};

inline std::vector<std::string> urls(const TabList& tabs) {
  std::vector<std::string> texts;
  for (const TabRef& tab : tabs) texts.push_back(tab->url.peek() ? tab->url.peek()->text() : "");
  return texts;
}

}  // namespace orvel::test
