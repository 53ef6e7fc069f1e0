#include "Base/GLibScheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>

#include "Base/Observable.h"
#include "Tests/Kit/Eventually.h"

namespace orvel {
namespace {

using test::eventually;
using testing::ElementsAre;

struct GLibSchedulerTest : testing::Test {
  std::vector<std::string> log;
  GLibScheduler scheduler;

  static gboolean note(gpointer log) {
    static_cast<std::vector<std::string>*>(log)->emplace_back("layout");
    return G_SOURCE_REMOVE;
  }
  // Runs where the toolkit lays out and draws.
  void logAtLayout() { g_idle_add_full(G_PRIORITY_HIGH_IDLE + 20, note, &log, nullptr); }
};

TEST_F(GLibSchedulerTest, FlushesEffectsAfterEventsAndBeforeLayout) {
  Observable<int> value = 0;
  const Effect watch = effect([&] { log.push_back(fmt::format("effect {}", value.get())); });
  logAtLayout();
  g_idle_add_full(
      G_PRIORITY_DEFAULT,
      [](gpointer data) -> gboolean {
        *static_cast<Observable<int>*>(data) = 1;
        return G_SOURCE_REMOVE;
      },
      &value, nullptr);
  ASSERT_TRUE(eventually([&] { return log.size() == 3; }));
  EXPECT_THAT(log, ElementsAre("effect 0", "effect 1", "layout"));
}

TEST_F(GLibSchedulerTest, ALongQueueKeepsItsOrderAndGivesWayToDrawing) {
  int ran = 0;
  bool isOrdered = true;
  int ranAtLayout = -1;
  for (int i = 0; i < 100'000; ++i)
    scheduler.post([&, i] {
      isOrdered &= ran == i;
      ++ran;
      if (i % 100 == 0) g_usleep(50);
      if (i == 0) logAtLayout();
      if (!log.empty() && ranAtLayout < 0) ranAtLayout = ran;
    });
  ASSERT_TRUE(eventually([&] { return ran == 100'000; }, 20s));
  EXPECT_TRUE(isOrdered);
  EXPECT_GT(ranAtLayout, 0);
  EXPECT_LT(ranAtLayout, 50'000) << "a frame was drawn in the middle of the queue";
}

Task<> noteAfter(std::vector<std::string>& log, std::string text, Duration time, SleepClock clock) {
  const auto result = co_await sleep(time, clock);
  log.push_back(text + (result == SleepResult::Done ? " done" : " cancelled"));
}

TEST_F(GLibSchedulerTest, SleepsOnBothClocks) {
  scheduler.start(noteAfter(log, "later", 60ms, SleepClock::Monotonic)).detach();
  scheduler.start(noteAfter(log, "boot", 20ms, SleepClock::Boot)).detach();
  auto handle = scheduler.start(noteAfter(log, "long", 1h, SleepClock::Boot));
  ASSERT_TRUE(eventually([&] { return log.size() == 2; }));
  handle.cancel();
  ASSERT_TRUE(eventually([&] { return log.size() == 3; }));
  EXPECT_THAT(log, ElementsAre("boot done", "later done", "long cancelled"));
}

TEST_F(GLibSchedulerTest, WorkersReportOnTheMainThread) {
  const auto main = std::this_thread::get_id();
  std::thread::id worker;
  std::thread::id reporter;
  for (const WorkPriority priority : {WorkPriority::UserInitiated, WorkPriority::Utility,
                                      WorkPriority::Files, WorkPriority::Database})
    scheduler.runInBackground([&] { worker = std::this_thread::get_id(); },
                              [&] {
                                reporter = std::this_thread::get_id();
                                log.push_back("done");
                              },
                              priority);
  ASSERT_TRUE(eventually([&] { return log.size() == 4; }));
  EXPECT_NE(worker, main);
  EXPECT_EQ(reporter, main);
}

TEST(GLibSchedulerEnd, WaitsForWorkersCarriesOutWhatWaitsForADatabaseAndReportsNothing) {
  const std::pair<WorkPriority, int> cases[] = {{WorkPriority::Database, 3},
                                                {WorkPriority::UserInitiated, 1}};
  for (const auto& [priority, expected] : cases) {
    int done = 0;
    bool hasReported = false;
    std::atomic<bool> hasBegun = false;
    {
      GLibScheduler scheduler;
      for (int i = 0; i < 3; ++i)
        scheduler.runInBackground(
            [&] {
              hasBegun = true;
              g_usleep(50'000);
              ++done;
            },
            [&] { hasReported = true; }, priority);
      while (!hasBegun) g_usleep(1000);
    }
    EXPECT_EQ(done, expected);
    EXPECT_FALSE(hasReported);
  }
}

}  // namespace
}  // namespace orvel
