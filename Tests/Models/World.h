#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Models/Spaces/Space.h"
#include "Models/Store/Services.h"
#include "Models/Tab/BrowserTab.h"
#include "Models/Windows/Interface.h"
#include "Tests/Fakes/FakeDesktop.h"
#include "Tests/Fakes/FakeEngine.h"
#include "Tests/Fakes/FakeHTTPSession.h"
#include "Tests/Fakes/MemoryFileSystem.h"
#include "Tests/Fakes/VirtualScheduler.h"

namespace orvel {
class BrowserStore;
}

namespace orvel::test {

inline URL address(const std::string& text) { return *URL::parse(text); }

// An interface that has what a test gives it.
struct FakeInterface final : Interface {
  DesktopWindow* window() override { return shown; }
  bool hasLittleWindows() const override { return static_cast<bool>(makeLittle); }
  std::shared_ptr<LittleWindow> makeLittleWindow(const TabRef& tab) override {
    return makeLittle(tab);
  }
  bool openUtilityWindow(UtilityWindow) override { return false; }

  DesktopWindow* shown = nullptr;
  std::function<std::shared_ptr<LittleWindow>(const TabRef&)> makeLittle;
};

// One run of the program over a disk: all that the model stands on, and the store.
class World {
 public:
  explicit World(std::shared_ptr<MemoryFileSystem> given = std::make_shared<MemoryFileSystem>());
  ~World();

  World& launch();

  // A tab at the top of today's, selected or not.
  TabRef open(const std::string& url, bool isSelected = true);
  std::shared_ptr<FakeWebView> view(const TabRef& tab) const {
    return std::static_pointer_cast<FakeWebView>(tab->liveWebView());
  }
  // As a view of the tab that is on screen.
  std::shared_ptr<FakeWebView> viewOnScreen(const TabRef& tab) const {
    auto live = view(tab);
    live->isOnScreen = true;
    return live;
  }
  Space& space() const;
  std::string file(const std::string& name) const;
  std::string sessionFile() const { return file("session.json"); }

  // What a save would write stands on the disk, or a save is on its way.
  void expectSaved();
  // For tests that change the model behind its operations.
  void saveNow();

  std::shared_ptr<MemoryFileSystem> disk;
  VirtualScheduler scheduler;
  FakeEngine engine{scheduler};
  FakeDesktop desktop{scheduler};
  FakeWindow window;
  FakeInterface interface;
  FileWriter writer{scheduler, disk};
  // No list is there and none is fetched; blocking is off, so that no first page waits.
  UserDefaults defaults;
  FilterListUpdater filterLists{
      scheduler, writer, defaults, {}, {disk, "/data/Orvel/Filters", "/share/Filters"}, {}};
  FakeNetwork network{scheduler};
  FaviconStore favicons{scheduler, *disk, network.sessions(), "/data/Orvel/Favicons"};
  CurrencyFeed currencies{scheduler, writer, network.sessions(), "/data/Orvel/eurofxref.xml",
                          address("https://rates.test/daily.xml")};
  EngineSuggestions engineSuggestions{network.sessions()};
  // What the extensions were told, and of which tab.
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
  // An extension runs, which has pages of its own.
  bool hasExtension = false;
  std::shared_ptr<BrowserStore> store;

 private:
  std::string present() const;

  std::string saved_;
};

std::vector<std::string> urls(const TabList& tabs);

}  // namespace orvel::test
