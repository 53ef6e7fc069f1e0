#include "WebEngine/Blocking/FilterListUpdater.h"

#include <gmock/gmock.h>

#include "Base/GLibScheduler.h"
#include "Tests/Fakes/MemoryFileSystem.h"
#include "Tests/Kit/Eventually.h"
#include "Tests/Kit/TestServer.h"

namespace orvel {
namespace {

using test::eventually;
using test::MemoryFileSystem;
using test::ServedPage;

constexpr auto kLastChecked = "filterListsLastChecked";
constexpr auto kDownload = "/data/Orvel/Filters/easylist.txt";
constexpr auto kShipped = "/app/Filters/easylist.txt";

// A list of exactly this many bytes.
std::string listOf(size_t size, std::string text = "[Adblock Plus 2.0]\n") {
  text.resize(size, '!');
  return text;
}

Task<> answerInto(FilterListUpdater& updater, std::optional<bool>& answer) {
  auto updating = updater.updateIfDue();
  answer = co_await std::move(updating);
}

struct FilterListUpdaterTest : testing::Test {
  GLibScheduler scheduler;
  std::shared_ptr<MemoryFileSystem> disk = std::make_shared<MemoryFileSystem>();
  FileWriter writer{scheduler, disk};
  UserDefaults defaults;
  test::TestServer server;
  FilterListFolders folders{disk, "/data/Orvel/Filters", "/app/Filters"};
  FilterListUpdater updater{
      scheduler,
      writer,
      defaults,
      &HTTPSession::ephemeral,
      folders,
      {{"easylist", *URL::parse(at("easylist"))}, {"cookies", *URL::parse(at("cookies"))}}};

  std::string at(const std::string& name) const { return server.proxy() + "/" + name; }

  bool update() {
    std::optional<bool> answer;
    const auto task = scheduler.start(answerInto(updater, answer));
    EXPECT_TRUE(eventually([&] { return answer.has_value(); }));
    return answer.value_or(false);
  }
};

TEST_F(FilterListUpdaterTest, TakesWhatIsAFilterListAndKeepsTheOldFileOtherwise) {
  struct Case {
    const char* name;
    ServedPage page;
    bool isTaken;
  };
  const Case cases[] = {
      {"10,001 bytes", {.body = listOf(10001)}, true},
      {"10,000 bytes", {.body = listOf(10000)}, false},
      {"a page", {.body = listOf(20000, "<html>Welcome to our hotel")}, false},
      {"status 500", {.body = listOf(20000), .status = 500}, false},
      {"cut off", {.body = listOf(40000), .truncate = 20000}, false},
      {"no UTF-8", {.body = listOf(20000) + "\xc3("}, false},
  };
  for (const auto& [name, page, isTaken] : cases) {
    SCOPED_TRACE(name);
    disk->put(kDownload, "[Adblock old");
    server.serve(at("easylist"), page);
    defaults.remove(kLastChecked);
    EXPECT_EQ(update(), isTaken);
    EXPECT_EQ(disk->contents()[kDownload], isTaken ? page.body : "[Adblock old");
    EXPECT_NEAR(defaults.number(kLastChecked).value_or(0),
                inSeconds(scheduler.now().time_since_epoch()), 10)
        << "a failed pass counts as well";
  }
  disk->failAlways(MemoryFileSystem::Fault::DiskFull);
  defaults.remove(kLastChecked);
  const std::string former = disk->contents()[kDownload];
  EXPECT_FALSE(update());
  EXPECT_EQ(disk->contents()[kDownload], former);
}

TEST_F(FilterListUpdaterTest, TriesOnceADayWhateverCameOfIt) {
  EXPECT_FALSE(update());
  server.serve(at("easylist"), listOf(12000));
  server.clearRequests();
  EXPECT_FALSE(update());
  const double now = inSeconds(scheduler.now().time_since_epoch());
  defaults.setNumber(kLastChecked, now - 86400 + 30);
  EXPECT_FALSE(update());
  EXPECT_EQ(server.requests().size(), 0u);
  defaults.setNumber(kLastChecked, now - 86401);
  EXPECT_TRUE(update());
}

TEST_F(FilterListUpdaterTest, GivesTheNewerOfTheTwoCopies) {
  const Date day = Date(std::chrono::hours(24 * 20000));
  EXPECT_EQ(folders.text("easylist"), std::nullopt);
  disk->put(kShipped, "shipped");
  EXPECT_EQ(folders.text("easylist"), "shipped") << "also without a date";
  disk->put(kDownload, "downloaded");
  disk->dates[kShipped] = day;
  EXPECT_EQ(folders.text("easylist"), "shipped") << "a date goes before none";
  disk->dates[kDownload] = day - 1s;
  EXPECT_EQ(folders.text("easylist"), "shipped") << "an update of the application";
  disk->dates[kDownload] = day;
  EXPECT_EQ(folders.text("easylist"), "downloaded");
  disk->put(kDownload, "\xff");
  EXPECT_EQ(folders.text("easylist"), std::nullopt) << "the chosen copy alone counts";
  EXPECT_EQ(folders.text("orvel"), std::nullopt);
}

}  // namespace
}  // namespace orvel
