#include "Tests/Models/World.h"

#include "Models/Store/BrowserStore.h"
#include "Models/Store/SessionFile.h"
#include "WebEngine/ExtensionHost.h"

namespace orvel::test {

namespace {

// Writes down what the extensions are told.
class RecordingExtensions final : public WebExtensionController {
 public:
  explicit RecordingExtensions(World& world) : log_(world.told), isLoaded_(world.hasExtension) {}
  void didOpenTab(WebExtensionTab& tab) override { log_.push_back("open " + name(tab)); }
  void didCloseTab(WebExtensionTab& tab) override { log_.push_back("close " + name(tab)); }
  void didActivateTab(WebExtensionTab& tab, WebExtensionTab* prior) override {
    log_.push_back("activate " + name(tab) + (prior ? " after " + name(*prior) : ""));
  }
  void didChangeTabProperties(TabProperties properties, WebExtensionTab& tab) override {
    log_.push_back((properties == TabProperties::Title ? "title " : "url ") + name(tab));
  }
  std::optional<WebExtensionContext> extensionContextForURL(const URL& url) const override {
    if (!url.hasScheme("webkit-extension") || !isLoaded_) return std::nullopt;
    return WebExtensionContext{address("webkit-extension://one/"),
                               WebViewConfiguration{.applicationNameForUserAgent = "extension"}};
  }

 private:
  static std::string name(WebExtensionTab& given) {
    const auto& tab = dynamic_cast<BrowserTab&>(given);
    EXPECT_FALSE(tab.profile->isPrivate) << "extensions never hear of a private tab";
    return tab.url.peek() ? tab.url.peek()->text() : "nothing";
  }

  std::vector<std::string>& log_;
  const bool& isLoaded_;
};

}  // namespace

World::World(std::shared_ptr<MemoryFileSystem> given) : disk(std::move(given)) {}

World::~World() {
  store.reset();
  scheduler.settle();
}

World& World::launch() {
  defaults.setBoolean("contentBlockingEnabled", false);
  defaults.setNumber("filterListsLastChecked", 1e12);
  store = BrowserStore::make(services);
  store->setInterface(&interface);
  store->extensions.controller = std::make_unique<RecordingExtensions>(*this);
  saved_ = present();
  return *this;
}

TabRef World::open(const std::string& url, bool isSelected) {
  return store->openTab(address(url), {.select = isSelected});
}

Space& World::space() const { return *store->activeSpace(); }

void World::saveNow() {
  store->session.save();
  scheduler.settle();
}

std::string World::file(const std::string& name) const {
  return disk->read(services.paths.support / name, ~0ull).value_or("");
}

void World::expectSaved() {
  if (!store || store->session.isSavePending() || present() == saved_) return;
  saved_ = present();
  EXPECT_EQ(sessionFile(), saved_) << "a change that is not saved";
}

std::string World::present() const {
  return untracked([this] { return store->session.record().encoded(); });
}

std::vector<std::string> urls(const TabList& tabs) {
  std::vector<std::string> texts;
  for (const TabRef& tab : tabs) texts.push_back(tab->url.peek() ? tab->url.peek()->text() : "");
  return texts;
}

}  // namespace orvel::test
