#pragma once

#include <string>
#include <vector>

#include "Models/BrowserStore.h"
#include "Tests/Fakes/FakeDesktop.h"
#include "Tests/Fakes/FakeEngine.h"
#include "Tests/Fakes/FakeHTTPSession.h"
#include "Tests/Fakes/MemoryFileSystem.h"
#include "Tests/Fakes/VirtualScheduler.h"

namespace orvel::test {

inline URL address(const std::string& text) { return *URL::parse(text); }

// Writes down what the extensions were told.
class RecordingExtensions final : public WebExtensionController {
 public:
  explicit RecordingExtensions(std::vector<std::string>& log) : log_(log) {}
  void didOpenTab(WebExtensionTab&) override { log_.push_back("open"); }
  void didCloseTab(WebExtensionTab&) override { log_.push_back("close"); }
  void didActivateTab(WebExtensionTab&, WebExtensionTab* prior) override {
    log_.push_back(prior ? "activate after another" : "activate");
  }
  void didChangeTabProperties(TabProperties properties, WebExtensionTab&) override {
    log_.push_back(properties == TabProperties::Title ? "title" : "url");
  }
  std::optional<WebExtensionContext> extensionContextForURL(const URL& url) const override {
    if (!url.hasScheme("webkit-extension") || !isLoaded) return std::nullopt;
    return WebExtensionContext{address("webkit-extension://one/"),
                               WebViewConfiguration{.applicationNameForUserAgent = "extension"}};
  }

  bool isLoaded = false;

 private:
  std::vector<std::string>& log_;
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
    auto recorder = std::make_unique<RecordingExtensions>(told);
    extensions = recorder.get();
    store->extensions.controller = std::move(recorder);
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

  std::shared_ptr<MemoryFileSystem> disk;
  VirtualScheduler scheduler;
  FakeEngine engine{scheduler};
  FakeDesktop desktop{scheduler};
  FakeWindow window;
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
};

inline std::vector<std::string> urls(const TabList& tabs) {
  std::vector<std::string> texts;
  for (const TabRef& tab : tabs) texts.push_back(tab->url.peek() ? tab->url.peek()->text() : "");
  return texts;
}

}  // namespace orvel::test
