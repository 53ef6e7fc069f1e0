#include "Base/Observable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Base/Assert.h"
#include "Base/Transaction.h"
#include "Tests/Fakes/VirtualScheduler.h"

namespace orvel {
namespace {

using test::VirtualScheduler;
using testing::ElementsAre;

struct ObservableTest : testing::Test {
  VirtualScheduler scheduler;
  int runs = 0;

  // An effect that counts its runs.
  template <typename Body>
  Effect counted(Body body) {
    return effect([this, body] {
      ++runs;
      body();
    });
  }
};

// Collects what assertions say for as long as it lives.
struct CaughtAssertions {
  std::vector<std::string> messages;
  AssertionHandler former =
      setAssertionHandler([this](std::string_view text) { messages.emplace_back(text); });
  ~CaughtAssertions() { setAssertionHandler(former); }
};

TEST_F(ObservableTest, RunsAtOnceAndOncePerTurnHoweverManyValuesChanged) {
  Observable<int> a = 1;
  Observable<int> b = 10;
  std::vector<int> sums;
  const Effect watch = effect([&] { sums.push_back(a + b); });
  a = 2;
  b = 20;
  a = 3;
  EXPECT_THAT(sums, ElementsAre(11));
  scheduler.turn();
  EXPECT_THAT(sums, ElementsAre(11, 23));
  scheduler.turn();
  EXPECT_EQ(sums.size(), 2u);
}

TEST_F(ObservableTest, IsWokenByWhatItsLatestRunReadAndTracked) {
  Observable<bool> usesA = true;
  Observable<int> a = 0;
  Observable<int> b = 0;
  Observable<int> unseen = 0;
  const Effect watch = counted([&] {
    usesA ? a.get() : b.get();
    untracked([&] { return unseen.get(); });
  });
  usesA = false;
  scheduler.turn();
  a = 1;
  unseen = 1;
  scheduler.turn();
  EXPECT_EQ(runs, 2);
  b = 1;
  scheduler.turn();
  EXPECT_EQ(runs, 3);
}

TEST_F(ObservableTest, EffectsRunInTheOrderOfTheirCreationUnlessTheyAreGone) {
  auto dying = std::make_unique<Observable<int>>(1);
  Observable<int> value = 0;
  std::vector<int> order;
  std::vector<Effect> effects;
  for (int i = 0; i < 5; ++i)
    effects.push_back(effect([&, i] {
      if (dying) dying->get();
      if (value.get() == 2 && i == 1) effects[3].stop();
      order.push_back(i);
    }));
  const auto ran = [&] {
    scheduler.turn();
    return std::exchange(order, {});
  };
  dying->set(2);
  dying.reset();
  EXPECT_THAT(ran(), ElementsAre(0, 1, 2, 3, 4, 0, 1, 2, 3, 4)) << "what woke them has gone";
  value = 2;
  EXPECT_THAT(ran(), ElementsAre(0, 1, 2, 4));
  effects.clear();
  value = 3;
  EXPECT_THAT(ran(), ElementsAre());
}

TEST_F(ObservableTest, CatchesAWriteFromAnEffectUnlessUntracked) {
  Observable<int> a = 0;
  Observable<int> b = 0;
  CaughtAssertions caught;
  const Effect allowed = effect([&] { untracked([&] { b = 1; }); });
  EXPECT_TRUE(caught.messages.empty());
  const Effect wrong = effect([&] { a = 1; });
  EXPECT_THAT(caught.messages, ElementsAre("an effect wrote to the model"));
}

TEST_F(ObservableTest, AnEffectMayEndItselfAndMakeOthers) {
  Observable<int> a = 0;
  std::vector<Effect> made;
  Effect own;
  std::vector<std::string> log;
  const auto marker = std::make_shared<int>(0);
  own = effect([&, marker] {
    log.push_back("own");
    if (a == 1) {
      own.stop();
      made.push_back(effect([&] { log.push_back(fmt::format("made {}", a.get())); }));
      EXPECT_EQ(marker.use_count(), 2) << "the body's captures live until it returns";
    }
  });
  a = 1;
  scheduler.turn();
  EXPECT_EQ(marker.use_count(), 1);
  a = 2;
  scheduler.turn();
  EXPECT_THAT(log, ElementsAre("own", "own", "made 1", "made 2"));
}

TEST_F(ObservableTest, ReachesAFixedPointOrSaysThatItCannot) {
  Observable<int> value = 0;
  const Effect settling = effect([&] {
    const int now = value;
    untracked([&] { value = std::min(now + 1, 5); });
  });
  scheduler.turn();
  EXPECT_EQ(value.peek(), 5);

  CaughtAssertions caught;
  const Effect endless = effect([&] {
    const int now = value;
    untracked([&] { value = now + 1; });
  });
  scheduler.turn();
  EXPECT_THAT(caught.messages, ElementsAre("effects do not settle"));
}

TEST_F(ObservableTest, GivesTheLatestTransactionAmongThoseThatWokeTheEffect) {
  Observable<int> a = 0;
  Observable<int> b = 0;
  std::vector<std::optional<Spring>> springs;
  const Effect watch = effect([&](const Wake& wake) {
    a.get();
    b.get();
    springs.push_back(wake.transaction ? std::optional(wake.transaction->spring) : std::nullopt);
  });
  Transaction::run(Spring::entry, [&] { a = 1; });
  Transaction::run(Spring::quick, [&] { b = 1; });
  b = 2;
  scheduler.turn();
  a = 2;
  scheduler.turn();
  Transaction::run(Spring::move, [&] { a = 2; });
  scheduler.turn();
  EXPECT_THAT(springs, ElementsAre(std::nullopt, std::optional(Spring::quick), std::nullopt));
}

}  // namespace
}  // namespace orvel
