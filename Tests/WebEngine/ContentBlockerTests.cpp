#include "WebEngine/Blocking/ContentBlocker.h"

#include <gmock/gmock.h>

#include "Base/Log.h"
#include "BrowserCore/Addresses/Endpoints.h"
#include "BrowserCore/ContentBlocking/FilterListConverter.h"
#include "Tests/Fakes/FakeEngine.h"
#include "Tests/Fakes/FakeHTTPSession.h"
#include "Tests/Fakes/MemoryFileSystem.h"
#include "Tests/Fakes/VirtualScheduler.h"

namespace orvel {
namespace {

using test::FakeContentController;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using State = ContentBlocker::State;

URL address(const std::string& text) { return *URL::parse(text); }

struct ContentBlockerTest : testing::Test {
  test::VirtualScheduler scheduler;
  std::shared_ptr<test::MemoryFileSystem> disk = std::make_shared<test::MemoryFileSystem>();
  FileWriter writer{scheduler, disk};
  UserDefaults defaults;
  test::FakeNetwork network{scheduler};
  test::FakeEngine engine{scheduler};
  FilterListUpdater updater{scheduler, writer, defaults, network.sessions(),
                            FilterListFolders{disk, "/data/Filters", "/app/Filters"}};
  std::unique_ptr<ContentBlocker> blocker;

  ContentBlockerTest() {
    for (const char* name : {"easylist", "easyprivacy", "cookies", "orvel"})
      ship(name, fmt::format("||{}.test^\n", name));
    disk->put("/app/Scripts/youtube-ads.js", "youtube");
    disk->put("/app/Scripts/autoconsent.js", "autoconsent");
    makeBlocker();
  }

  void ship(const std::string& name, const std::string& text) {
    disk->put(fmt::format("/app/Filters/{}.txt", name), text);
  }
  void makeBlocker() {
    blocker =
        std::make_unique<ContentBlocker>(scheduler, engine, defaults, updater, "/app/Scripts");
    blocker->standardScripts = {UserScript{.source = "standard"}};
  }
  // A start of the application with what the last one left.
  void restart() {
    makeBlocker();
    engine.ruleStore.compiled.clear();
    blocker->start();
    scheduler.advance(100ms);
  }
  std::vector<std::string> stored() const {
    std::vector<std::string> identifiers;
    for (const auto& [identifier, list] : engine.ruleStore.lists) identifiers.push_back(identifier);
    return identifiers;
  }
  std::vector<std::string> loadedNames() const {
    std::vector<std::string> names;
    for (const auto& [name, list] : blocker->ruleLists.peek()) names.push_back(name);
    return names;
  }
  std::string identifier(const std::string& name) const {
    for (const auto& [listName, list] : blocker->ruleLists.peek())
      if (listName == name) return list->identifier();
    return "";
  }
  std::shared_ptr<FakeContentController> makePage() {
    return std::static_pointer_cast<FakeContentController>(blocker->makeUserContentController());
  }
  void navigate(FakeContentController& page, const std::string& to) {
    blocker->setCurrentSite(page, ContentBlocker::site(address(to)));
    blocker->install(page);
  }
  static std::vector<std::string> on(const FakeContentController& page) {
    std::vector<std::string> parts;
    for (const auto& script : page.scripts) parts.push_back(script.source);
    for (const auto& list : page.ruleLists)
      parts.push_back(list->identifier().substr(0, list->identifier().find('-')));
    return parts;
  }
  static std::vector<std::string> logged() {
    std::vector<std::string> lines;
    for (const auto& entry : Log::recent())
      if (entry.category == "ContentBlocker") lines.push_back(entry.message);
    return lines;
  }
};

TEST_F(ContentBlockerTest, CompilesEachListOnceAndKeepsItByVersionAndFingerprint) {
  for (const char* former : {"fanboy-v1-aabbccddeeff", "easylistplus-v1-00", "easylist"})
    engine.ruleStore.lists[former] = nullptr;
  engine.ruleStore.lists["easylist-v1-112233445566"] =
      std::make_shared<test::FakeRuleList>("easylist-v1-112233445566", "[]");
  restart();
  EXPECT_EQ(blocker->state.peek(), State::Ready);
  EXPECT_THAT(loadedNames(), ElementsAre("easylist", "easyprivacy", "cookies", "orvel"));
  // The first 6 bytes of SHA-256 of "||orvel.test^\n".
  EXPECT_EQ(identifier("orvel"),
            fmt::format("orvel-v{}-e96409a5be3f", FilterListConverter::version));
  EXPECT_THAT(engine.ruleStore.lists[identifier("easylist")]->json,
              testing::HasSubstr(R"(easylist\\.test)"));
  EXPECT_THAT(logged().back(), StartsWith("Compiled orvel: 2 rules, 0 skipped, "));
  const auto identifiers = stored();
  EXPECT_EQ(identifiers.size(), 4u) << "what nobody names and an older converter's are gone";

  restart();
  EXPECT_THAT(engine.ruleStore.compiled, IsEmpty());
  EXPECT_EQ(stored(), identifiers);

  ship("easyprivacy", "||changed.test^\n");
  restart();
  EXPECT_THAT(engine.ruleStore.compiled, ElementsAre(identifier("easyprivacy")));
  EXPECT_EQ(stored().size(), 4u) << "the former one is gone";

  const std::string damaged = identifier("cookies");
  engine.ruleStore.damaged.insert(damaged);
  restart();
  EXPECT_THAT(engine.ruleStore.compiled, ElementsAre(damaged));
  EXPECT_EQ(loadedNames().size(), 4u);
}

TEST_F(ContentBlockerTest, DoesWithoutWhatIsMissing) {
  restart();
  ship("cookies", "\xff");
  restart();
  EXPECT_THAT(loadedNames(), ElementsAre("easylist", "easyprivacy", "orvel"));
  EXPECT_THAT(logged(), testing::Contains("Missing filter list cookies"));
  engine.hasRuleStore = false;
  restart();
  EXPECT_EQ(blocker->state.peek(), State::Ready);
  EXPECT_THAT(loadedNames(), IsEmpty());
}

TEST_F(ContentBlockerTest, LoadsAgainWhatAnUpdateBrought) {
  const std::string fresh = "[Adblock Plus 2.0]\n||fresh.test^\n" + std::string(12000, '!');
  network.answers[std::string(endpoints::kEasyList)] = {.status = 200, .body = fresh};
  disk->dates["/data/Filters/easylist.txt"] = scheduler.now();
  restart();
  EXPECT_EQ(network.requests.size(), 3u);
  EXPECT_EQ(blocker->listGeneration.peek(), 2);
  EXPECT_EQ(engine.ruleStore.compiled.size(), 5u) << "the other three keep their identifiers";
  EXPECT_THAT(engine.ruleStore.lists[identifier("easylist")]->json, testing::HasSubstr("fresh"));
  EXPECT_EQ(stored().size(), 4u);
  blocker->start();
  scheduler.settle();
  EXPECT_EQ(blocker->listGeneration.peek(), 2) << "starts once";
}

TEST_F(ContentBlockerTest, HoldsFirstPagesUntilTheListsAreThereOrThreeSecondsHaveGone) {
  std::vector<int> order;
  blocker->readyHandlers = {[&] { order.push_back(1); }, [&] { order.push_back(2); }};
  EXPECT_TRUE(blocker->holdsFirstLoads());
  blocker->start();
  EXPECT_EQ(blocker->state.peek(), State::Preparing);
  EXPECT_THAT(order, IsEmpty());
  scheduler.advance(100ms);
  EXPECT_FALSE(blocker->holdsFirstLoads());
  scheduler.advance(4s);
  EXPECT_THAT(order, ElementsAre(1, 2)) << "each runs once";
  EXPECT_TRUE(blocker->hasTimedOut.peek());

  engine.ruleStore.lists.clear();
  engine.ruleStore.compileTime = 2s;
  makeBlocker();
  blocker->start();
  const auto page = makePage();
  blocker->readyHandlers.push_back([&] { order.push_back(3); });
  scheduler.advance(2999ms);
  EXPECT_THAT(order, ElementsAre(1, 2));
  scheduler.advance(1ms);
  EXPECT_THAT(order, ElementsAre(1, 2, 3));
  EXPECT_THAT(on(*page), ElementsAre("standard", "youtube", "autoconsent"));
  scheduler.advance(5s);
  EXPECT_THAT(on(*page), ElementsAre("standard", "youtube", "autoconsent", "easylist",
                                     "easyprivacy", "orvel"));
  makeBlocker();
  blocker->setEnabled(false);
  EXPECT_FALSE(blocker->holdsFirstLoads());
}

TEST_F(ContentBlockerTest, PutsOnAPageWhatTheSwitchesSay) {
  restart();
  const auto page = makePage();
  const auto everything =
      ElementsAre("standard", "youtube", "autoconsent", "easylist", "easyprivacy", "orvel");
  EXPECT_THAT(on(*page), everything);
  const int count = page->clearCount;
  navigate(*page, "https://example.com/");
  EXPECT_EQ(page->clearCount, count) << "an ordinary navigation touches nothing";

  blocker->setCookieRejectionEnabled(false);
  EXPECT_THAT(on(*page),
              ElementsAre("standard", "youtube", "easylist", "easyprivacy", "cookies", "orvel"));
  blocker->setEnabled(false);
  EXPECT_THAT(on(*page), ElementsAre("standard"));
  blocker->setCookieRejectionEnabled(true);
  EXPECT_THAT(on(*page), ElementsAre("standard", "autoconsent"));
  EXPECT_EQ(defaults.boolean("contentBlockingEnabled"), false);
  EXPECT_EQ(defaults.boolean("cookiePopupRejectionEnabled"), true);

  makeBlocker();
  EXPECT_FALSE(blocker->isEnabled.peek());
  blocker->setEnabled(true);
  disk->put("/app/Scripts/autoconsent.js", "\xff");
  restart();
  EXPECT_THAT(on(*makePage()),
              ElementsAre("standard", "youtube", "easylist", "easyprivacy", "orvel"))
      << "a script that cannot be read is left out";
}

TEST_F(ContentBlockerTest, PausesOnASiteAndItsSubdomains) {
  restart();
  const auto page = makePage();
  EXPECT_TRUE(blocker->togglePause(address("https://WWW.Example.com/a")));
  for (const char* covered :
       {"http://example.com/", "https://www.example.com:8443/", "https://a.b.example.com/"}) {
    EXPECT_TRUE(blocker->isPaused(address(covered))) << covered;
  }
  for (const char* uncovered : {"http://notexample.com/", "https://com/", "about:blank"})
    EXPECT_FALSE(blocker->isPaused(address(uncovered))) << uncovered;
  EXPECT_FALSE(blocker->isPaused(std::nullopt));
  navigate(*page, "https://other.test/");
  EXPECT_TRUE(blocker->togglePause(address("https://other.test/")));
  EXPECT_THAT(on(*page), ElementsAre("standard", "autoconsent")) << "without a navigation";
  EXPECT_EQ(defaults.list("blockingPausedSites"),
            (UserDefaults::List{"example.com", "other.test"}));
  EXPECT_FALSE(blocker->togglePause(address("https://deep.example.com/")))
      << "on a subdomain of a paused site it ends the pause of the whole";
  EXPECT_EQ(defaults.list("blockingPausedSites"), UserDefaults::List{"other.test"});
  EXPECT_FALSE(blocker->togglePause(address("about:blank")));

  makeBlocker();
  EXPECT_TRUE(blocker->isPaused(address("http://other.test/")));
  blocker->resume("other.test");
  EXPECT_FALSE(blocker->isPaused(address("http://other.test/")));
  EXPECT_EQ(defaults.list("blockingPausedSites"), UserDefaults::List{});
}

TEST_F(ContentBlockerTest, ForgetsControllersThatAreGone) {
  restart();
  blocker->togglePause(address("https://example.com/"));
  // Enough of them for the allocator to give the same places again.
  for (int i = 0; i < 100; ++i) {
    const auto page = makePage();
    EXPECT_THAT(on(*page), testing::Contains("easylist")) << "of a page that is on no site yet";
    navigate(*page, "https://example.com/");
    EXPECT_THAT(on(*page), testing::Not(testing::Contains("easylist")));
  }
}

TEST_F(ContentBlockerTest, EndsInTheMiddleOfLoading) {
  bool isHandled = false;
  const auto begin = [&] {
    blocker->readyHandlers.push_back([&] { isHandled = true; });
    blocker->start();
  };
  const auto expectTheEnd = [&] {
    scheduler.advance(20s);
    EXPECT_FALSE(isHandled);
    EXPECT_EQ(scheduler.liveTaskCount(), 0u);
  };
  engine.ruleStore.compileTime = 2s;
  begin();
  scheduler.advance(3ms);
  blocker.reset();
  expectTheEnd();

  engine.ruleStore.compileTime = {};
  restart();
  engine.ruleStore.compiled.clear();
  for (const std::string& stale : stored()) engine.ruleStore.damaged.insert(stale);
  engine.ruleStore.willLookUp = [this] { scheduler.post([this] { blocker.reset(); }); };
  makeBlocker();
  begin();
  expectTheEnd();
  EXPECT_THAT(engine.ruleStore.compiled, IsEmpty()) << "it was gone by the answer";
}

}  // namespace
}  // namespace orvel
