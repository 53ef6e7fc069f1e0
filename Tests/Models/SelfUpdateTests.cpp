#include "Models/Updates/SelfUpdate.h"

#include "Base/Log.h"
#include "Models/Store/ApplicationLifecycle.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Updates/UpdateServices.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* kFeed = "https://feed.test/version.json";
constexpr const char* kArchive = "https://feed.test/orvel.zip";

struct SelfUpdateTest : ModelTest {
  SelfUpdateTest() { world.network.answers[kArchive] = HTTPAnswer{.status = 200}; }

  void release(int64_t build,
               const std::string& rest = fmt::format(R"("archive":"{}","signature":"sig")",
                                                     kArchive)) {
    world.network.answers[kFeed] = HTTPAnswer{
        .status = 200,
        .body = fmt::format(R"({{"version":"2.0","build":{},"url":"https://feed.test/get",{}}})",
                            build, rest.empty() ? R"("x":1)" : rest)};
  }
  int requests(const std::string& url) {
    return static_cast<int>(std::ranges::count(world.network.requests, url));
  }
  int checks() { return requests(kFeed); }
  void checkNow() {
    store().selfUpdate.checkNow();
    settle();
  }
  // What the latest alert said, its buttons last.
  std::string alert() {
    if (world.desktop.alerts.empty()) return "";
    const Alert& shown = world.desktop.alerts.back().alert;
    std::string text = shown.messageText + "|" + shown.informativeText;
    for (const auto& button : shown.buttons) text += "|" + button;
    return text;
  }
  void answer(size_t button) {
    world.desktop.openAlerts.back()({.button = button});
    settle();
  }
  // The swaps that the end of the program begins.
  std::vector<std::string> swaps() {
    store().selfUpdate.installIfReady();
    std::vector<std::string> found;
    std::ranges::copy_if(world.updateWork->calls, std::back_inserter(found),
                         [](const auto& call) { return call.starts_with("swap"); });
    return found;
  }
  // The latest line of the log about updates.
  static std::string logged() {
    std::string line;
    for (const auto& entry : Log::recent())
      if (entry.category == "updates") line = entry.message;
    return line;
  }
};

TEST_F(SelfUpdateTest, LooksAfterTheLaunchAndEverySixHours) {
  ApplicationLifecycle lifecycle(world.store, {});
  lifecycle.didFinishLaunching();
  settle();
  EXPECT_THAT(world.updateWork->calls, ElementsAre("remove /cache/Updates"));
  advance(10s - 1ms);
  EXPECT_EQ(checks(), 0);
  advance(1ms);
  EXPECT_EQ(checks(), 1);
  advance(6h - 1ms);
  EXPECT_EQ(checks(), 1);
  release(99);
  advance(1ms);
  release(100);
  advance(6h);
  EXPECT_EQ(checks(), 3);
  EXPECT_EQ(toast(), "") << "no answer, an older release and the running one";
  EXPECT_EQ(requests(kArchive), 0);
  lifecycle.willTerminate();
  EXPECT_THAT(swaps(), IsEmpty());
}

TEST_F(SelfUpdateTest, PreparesARelease) {
  release(101);
  store().selfUpdate.start();
  advance(10s);
  EXPECT_EQ(toast(), "Orvel 2.0 is ready");
  EXPECT_EQ(store().toasts.toast.peek()->actionTitle, "Restart");
  EXPECT_EQ(logged(), "Update 101 staged");
  EXPECT_THAT(
      world.updateWork->calls,
      ElementsAre("remove /cache/Updates", "remove /cache/Updates/101", "create /cache/Updates/101",
                  "stage /cache/Updates/101/update.zip by sig/key for com.brinemark.orvel "
                  "as 101"));
  advance(30s - 1ms);
  EXPECT_NE(toast(), "");
  advance(1ms);
  EXPECT_EQ(toast(), "");
  advance(6h);
  EXPECT_EQ(checks(), 2);
  EXPECT_EQ(requests(kArchive), 1) << "it is there";
  EXPECT_EQ(toast(), "") << "each build is told of once";
  EXPECT_THAT(swaps(),
              ElementsAre("swap /apps/Orvel.app for /cache/Updates/101/unpacked/Orvel.app"));
  EXPECT_EQ(logged(), "Installing update 101 on quit");

  release(102);
  advance(6h - 30s);
  EXPECT_EQ(toast(), "Orvel 2.0 is ready");
  store().toasts.undoToast();
  settle();
  EXPECT_EQ(world.desktop.terminateCount, 1);
  EXPECT_EQ(swaps().back(),
            "swap /apps/Orvel.app for /cache/Updates/102/unpacked/Orvel.app, relaunch");
}

TEST_F(SelfUpdateTest, OffersByHandWhatItCannotPrepare) {
  auto& updates = world.services.updates;
  auto& work = *world.updateWork;
  const struct {
    std::string reason;
    std::function<void()> arrange;
    int downloads = 0;
  } cases[] = {
      {"cannotReplaceApp", [&] { work.isReplaceable = false; }},
      {"cannotReplaceApp", [&] { updates.program.bundle.clear(); }},
      {"notOffered", [&] { updates.program.identifier.reset(); }},
      {"notOffered", [&] { release(101, R"("signature":"sig")"); }},
      {"notOffered", [&] { release(101, fmt::format(R"("archive":"{}")", kArchive)); }},
      {"notOffered",
       [&] { release(101, R"("archive":"http://feed.test/orvel.zip","signature":"sig")"); }},
      {"badDownload", [&] { world.network.answers[kArchive] = HTTPAnswer{.status = 404}; }, 1},
      {"the archive did not come whole", [&] { world.network.answers.erase(kArchive); }, 1},
      {"wrongBuild", [&] { work.failure = UpdateFailure::wrongBuild; }, 1},
      {"No space left on device",
       [&] { work.createError = std::make_error_code(std::errc::no_space_on_device); }},
  };
  const auto program = updates.program;
  int64_t build = 100;
  for (const auto& [reason, arrange, downloads] : cases) {
    SCOPED_TRACE(reason);
    updates.program = program;
    work.isReplaceable = true;
    work.failure.reset();
    work.createError.clear();
    work.calls.clear();
    world.network.answers[kArchive] = HTTPAnswer{.status = 200};
    world.network.requests.clear();
    ++build;
    release(101);
    arrange();
    auto& body = world.network.answers[kFeed].body;
    body.replace(body.find("101"), 3, std::to_string(build));

    store().selfUpdate.start();
    advance(10s);
    EXPECT_EQ(toast(), "Orvel 2.0 is available");
    EXPECT_EQ(logged(), fmt::format("Update {} not staged: {}", build, reason));
    EXPECT_EQ(requests(kArchive), downloads);
    if (downloads) EXPECT_EQ(work.calls.back(), fmt::format("remove /cache/Updates/{}", build));
    store().toasts.undoToast();
    EXPECT_EQ(selected()->url.peek()->text(), "https://feed.test/get");
    advance(6h);
    EXPECT_EQ(toast(), "") << "told of once";
    EXPECT_EQ(requests(kArchive), 2 * downloads) << "tried again";
    EXPECT_THAT(swaps(), IsEmpty());
  }
}

TEST_F(SelfUpdateTest, TellsWhatTheCommandFound) {
  const std::string failed = "Couldn’t check for updates|Check your connection and try again.|OK";
  checkNow();
  EXPECT_EQ(alert(), failed);
  EXPECT_EQ(logged(), "Update check failed: the feed did not answer");
  world.network.answers[kFeed] = HTTPAnswer{.status = 500};
  checkNow();
  EXPECT_EQ(logged(), "Update check failed: the feed answered 500");
  world.network.answers[kFeed] = HTTPAnswer{.status = 200, .body = "{}"};
  checkNow();
  EXPECT_EQ(logged(), "Update check failed: the feed holds no record");
  release(100);
  checkNow();
  EXPECT_EQ(alert(), "You’re up to date|Orvel 1.0 is the latest version.|OK");
  EXPECT_EQ(toast(), "");

  const std::string detail = "You have 1.0. Your tabs and logins stay as they are.";
  release(101, "");
  checkNow();
  EXPECT_EQ(toast(), "Downloading Orvel 2.0…");
  EXPECT_EQ(alert(), "Orvel 2.0 is available|" + detail + "|Download|Later");
  answer(1);
  EXPECT_EQ(requests("https://feed.test/get"), 0);
  checkNow();
  answer(0);
  EXPECT_EQ(selected()->url.peek()->text(), "https://feed.test/get");

  release(102);
  checkNow();
  EXPECT_EQ(alert(), "Orvel 2.0 is ready|" + detail + "|Restart|Later");
  answer(1);
  EXPECT_EQ(world.desktop.terminateCount, 0);
  EXPECT_THAT(swaps(),
              ElementsAre("swap /apps/Orvel.app for /cache/Updates/102/unpacked/Orvel.app"));
  advance(1min);
  checkNow();
  EXPECT_EQ(toast(), "") << "it is there";
  EXPECT_EQ(requests(kArchive), 1);
  answer(0);
  EXPECT_EQ(world.desktop.terminateCount, 1);
  EXPECT_THAT(swaps().back(), testing::EndsWith(", relaunch"));
}

TEST_F(SelfUpdateTest, WhoeverAsksForAReleaseThatIsOnItsWayWaitsForIt) {
  release(101);
  world.network.slow = kArchive;
  store().selfUpdate.start();
  advance(10s);
  checkNow();
  EXPECT_THAT(world.desktop.alerts, IsEmpty());
  world.network.answerWaiting();
  settle();
  EXPECT_EQ(requests(kArchive), 1);
  EXPECT_THAT(alert(), testing::StartsWith("Orvel 2.0 is ready"));
  EXPECT_EQ(toast(), "Orvel 2.0 is ready");
}

TEST_F(SelfUpdateTest, OfTwoReleasesOnTheirWayTheOneAskedForLastGoesIn) {
  world.network.slow = kArchive;
  for (const int64_t build : {102, 101}) {
    release(build);
    checkNow();
  }
  for (const int64_t build : {101, 102}) {
    world.network.waiting[build == 101 ? 1 : 0]();
    settle();
    EXPECT_EQ(swaps().back(), "swap /apps/Orvel.app for /cache/Updates/101/unpacked/Orvel.app");
  }
}

TEST_F(SelfUpdateTest, WhoStaysOnAPageDoesNotRestartLater) {
  release(101);
  const TabRef tab = load("https://guarded.test/");
  world.view(tab)->guardsChanges = true;
  checkNow();
  answer(0);
  ASSERT_EQ(world.desktop.terminateCount, 0);
  tab->questions.answer(tab->questions.current.peek()->id, {.button = 0});
  settle();
  EXPECT_THAT(swaps(),
              ElementsAre("swap /apps/Orvel.app for /cache/Updates/101/unpacked/Orvel.app"));
}

TEST_F(SelfUpdateTest, NoAddressButOfTheWebIsOpened) {
  world.network.answers[kFeed] = HTTPAnswer{
      .status = 200, .body = R"({"version":"2.0","build":101,"url":"file:///etc/passwd"})"};
  const auto tabs = store().everyTab().size();
  checkNow();
  answer(0);
  EXPECT_EQ(store().everyTab().size(), tabs);
}

}  // namespace
}  // namespace orvel::test
