#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Base/Observable.h"
#include "Base/Scheduler.h"
#include "Desktop/Animator.h"
#include "Tests/Fakes/VirtualScheduler.h"

namespace orvel {
namespace {

using test::VirtualScheduler;
using testing::ElementsAre;

using Lines = std::vector<std::string>;

struct TaskTest : testing::Test {
  Lines log;
  VirtualScheduler scheduler;
};

Task<> say(Lines& log, std::string text) {
  log.push_back(std::move(text));
  co_return;
}

Task<> sayAfter(Lines& log, std::string text, Duration duration) {
  const auto result = co_await sleep(duration);
  log.push_back(text + (result == SleepResult::Done ? " done" : " cancelled"));
}

Task<> writeAndStart(VirtualScheduler& scheduler, Observable<int>& value, Lines& log) {
  value = value.peek() + 1;
  log.push_back("task");
  if (value.peek() < 3) scheduler.start(writeAndStart(scheduler, value, log)).detach();
  co_return;
}

TEST_F(TaskTest, BeginsOnTheNextTurnInTheOrderOfStartingAfterTheFlush) {
  Observable<int> value = 0;
  const Effect watch = effect([&] { log.push_back(fmt::format("effect {}", value.get())); });
  scheduler.start(writeAndStart(scheduler, value, log)).detach();
  scheduler.start(say(log, "other")).detach();
  value = 1;
  EXPECT_THAT(log, ElementsAre("effect 0"));
  scheduler.turn();
  EXPECT_THAT(log, ElementsAre("effect 0", "effect 1", "task", "other", "effect 2"));
  log.clear();
  scheduler.settle();
  EXPECT_THAT(log, ElementsAre("task", "effect 3"));
}

TEST_F(TaskTest, AnswersACancelledSleepOnTheNextTurn) {
  auto handle = scheduler.start(sayAfter(log, "sleep", 1h));
  scheduler.settle();
  handle.cancel();
  EXPECT_TRUE(log.empty());
  scheduler.turn();
  EXPECT_THAT(log, ElementsAre("sleep cancelled"));
  // Also one that it hasn't begun when its task is cancelled.
  scheduler.start(sayAfter(log, "late", 1h)).cancel();
  scheduler.settle();
  EXPECT_THAT(log, ElementsAre("sleep cancelled", "late cancelled"));
  EXPECT_EQ(scheduler.elapsed(), 0s);
}

Task<> loopForSixHours(int& passes) {
  for (;;) {
    const auto result = co_await sleep(300s, SleepClock::Boot);
    if (result == SleepResult::Cancelled) co_return;
    ++passes;
  }
}

TEST_F(TaskTest, SleepersWakeInTheOrderOfTheirDeadlinesAndLoopsCostNothing) {
  int passes = 0;
  const auto loop = scheduler.start(loopForSixHours(passes));
  for (const int delay : {30, 10, 20})
    scheduler.start(sayAfter(log, std::to_string(delay), std::chrono::seconds(delay))).detach();
  scheduler.advance(9999ms);
  EXPECT_TRUE(log.empty());
  scheduler.advance(6h);
  EXPECT_EQ(passes, 72);
  EXPECT_THAT(log, ElementsAre("10 done", "20 done", "30 done"));
}

Task<> awaitFuture(Future<int> future, Lines& log) {
  const int value = co_await std::move(future);
  log.push_back(std::to_string(value));
}

TEST_F(TaskTest, AFutureTakesItsFirstValueAndResumesOnTheNextTurn) {
  auto [future, resolve] = makeFuture<int>();
  scheduler.start(awaitFuture(std::move(future), log)).detach();
  scheduler.settle();
  resolve(1);
  resolve(2);
  EXPECT_TRUE(log.empty());
  scheduler.settle();
  EXPECT_THAT(log, ElementsAre("1"));
}

TEST(Scheduler, EndsSuspendedTasksAndLateResolversDoNothing) {
  Lines log;
  auto [future, resolve] = makeFuture<int>();
  TaskHandle sleeping;
  {
    VirtualScheduler scheduler;
    scheduler.start(awaitFuture(std::move(future), log)).detach();
    sleeping = scheduler.start(sayAfter(log, "sleep", 1h));
    scheduler.settle();
  }
  resolve(1);
  sleeping.cancel();
  EXPECT_TRUE(log.empty());
}

TEST(Scheduler, DropsWhatItsEndPosts) {
  struct Poster {
    Scheduler& scheduler;
    std::shared_ptr<int> token;
    ~Poster() {
      scheduler.post([held = token] {});
    }
  };
  const auto token = std::make_shared<int>(0);
  {
    VirtualScheduler scheduler;
    scheduler.post([poster = std::make_shared<Poster>(scheduler, token)] {});
  }
  EXPECT_EQ(token.use_count(), 1);
}

// Animation

struct AnimatorTest : TaskTest {
  bool isMotionOn = true;
  Animator animator{scheduler, [this] { return isMotionOn; }};
};

TEST_F(AnimatorTest, CompletesOnceAfterTheResponseOrTheSettlingTimeWithNoWindow) {
  const std::pair<Spring, Duration> springs[] = {
      {Spring::quick, 220ms}, {{.response = 0.3, .dampingFraction = 1, .settling = 0.5}, 500ms}};
  for (const auto& [spring, time] : springs) {
    Observable<int> value = 0;
    int completions = 0;
    animator.animate(
        spring, [&] { value = 1; }, [&] { ++completions; });
    EXPECT_EQ(value.peek(), 1);
    scheduler.advance(time - 1ms);
    EXPECT_EQ(completions, 0);
    scheduler.advance(1ms);
    EXPECT_EQ(completions, 1);
    scheduler.advance(1h);
    EXPECT_EQ(completions, 1);
    isMotionOn = false;
    animator.animate(
        spring, [&] { value = 2; }, [&] { ++completions; });
    EXPECT_EQ(completions, 2) << "at once";
    isMotionOn = true;
  }
}

}  // namespace
}  // namespace orvel
