#pragma once

#include <fmt/format.h>

#include <fstream>
#include <functional>

#include "Engine/WebKitGtk/Rules/SealedRuleListStore.h"
#include "Tests/Contract/RecordingDelegate.h"
#include "Tests/Engine/EngineTest.h"
#include "Tests/Engine/LongestStall.h"
#include "Tests/Fakes/FakeEngine.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel::test {

// What the blocker asks of the real engine, with a store of content rules of the test's own.
class EngineWithStore final : public FakeEngine {
 public:
  EngineWithStore(Engine& engine, std::shared_ptr<ContentRuleListStore> store, Scheduler& scheduler)
      : FakeEngine(scheduler), engine_(engine), store_(std::move(store)) {}

  std::shared_ptr<UserContentController> makeUserContentController() override {
    return engine_.makeUserContentController();
  }
  std::shared_ptr<ContentRuleListStore> contentRuleListStore() override { return store_; }

 private:
  Engine& engine_;
  std::shared_ptr<ContentRuleListStore> store_;
};

// The content blocker on the real engine, with lists of the test's own.
class BlockingTest : public EngineTest {
 protected:
  BlockingTest() { useStore(folder.path / "Rules"); }

  static std::filesystem::path shareFolder() { return ORVEL_BUILD_DIR "/share/orvel"; }
  static std::filesystem::path compiler() { return ORVEL_BUILD_DIR "/bin/orvel-rule-compiler"; }

  // Compiled lists lie in `ruleFolder` from now on, made by the program `ruleCompiler`.
  void useStore(const std::filesystem::path& ruleFolder,
                const std::filesystem::path& ruleCompiler = compiler()) {
    blocker.reset();
    rules = ruleFolder;
    blockingEngine = std::make_unique<EngineWithStore>(
        *engine, std::make_shared<SealedRuleListStore>(scheduler, rules, ruleCompiler), scheduler);
  }

  void write(const std::filesystem::path& path, const std::string& text) {
    ASSERT_FALSE(writeAtomically(*disk, path, text));
  }
  void ship(const std::string& name, const std::string& text) {
    write(lists / (name + ".txt"), text);
  }

  // A start of the application: the lists are there when it returns.
  void start() {
    defaults.setNumber("filterListsLastChecked", 1e12);
    updater = std::make_unique<FilterListUpdater>(
        scheduler, writer, defaults, &HTTPSession::ephemeral,
        FilterListFolders{disk, folder.path / "Filters", lists});
    blocker = std::make_unique<ContentBlocker>(scheduler, *blockingEngine, defaults, *updater,
                                               shareFolder() / "Scripts");
    blocker->start();
    ASSERT_TRUE(
        eventually([&] { return blocker->state.peek() == ContentBlocker::State::Ready; }, 600s));
  }

  std::shared_ptr<WebView> makePage(WebViewConfiguration configuration = {}) {
    configuration.userContentController = blocker->makeUserContentController();
    auto view = makeView(configuration);
    show(*view);
    return view;
  }

  // Navigates as a tab does.
  void visit(WebView& view, const std::string& url) {
    auto& controller = *view.configuration().userContentController;
    blocker->setCurrentSite(controller, ContentBlocker::site(*URL::parse(url)));
    blocker->install(controller);
    load(view, url);
  }

  std::string display(WebView& view, const std::string& id) {
    return evaluate(view,
                    fmt::format("getComputedStyle(document.getElementById('{}')).display", id));
  }

  // The names of the files in the folder of compiled lists.
  std::vector<std::string> ruleFiles(const std::string& prefix) {
    std::vector<std::string> names;
    for (const std::string& name : disk->list(rules))
      if (name.starts_with(prefix)) names.push_back(name);
    return names;
  }

  std::shared_ptr<FileSystem> disk = FileSystem::disk();
  FileWriter writer{scheduler, disk};
  UserDefaults defaults;
  // Where the lists ship, and where they lie compiled.
  std::filesystem::path lists = folder.path / "Shipped";
  std::filesystem::path rules;
  std::unique_ptr<FilterListUpdater> updater;
  std::unique_ptr<EngineWithStore> blockingEngine;
  std::unique_ptr<ContentBlocker> blocker;
};

}  // namespace orvel::test
