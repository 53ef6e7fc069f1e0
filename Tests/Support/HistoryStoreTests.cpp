#include "Support/Stores/HistoryStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Base/GLibScheduler.h"
#include "Tests/Fakes/VirtualScheduler.h"
#include "Tests/Kit/Eventually.h"
#include "Tests/Kit/TemporaryFolder.h"

namespace orvel::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const UUID kOne = UUID::random(), kOther = UUID::random();

URL page(const std::string& name) { return *URL::parse("https://" + name + "/"); }

std::vector<std::string> hosts(const HistoryStore::Entries& entries) {
  std::vector<std::string> names;
  for (const auto& entry : entries) names.emplace_back(*entry.url.host());
  return names;
}

using Answers = std::vector<std::vector<std::string>>;

Task<> keep(Future<HistoryStore::Entries> future, Answers* answers) {
  const auto entries = co_await std::move(future);
  answers->push_back(hosts(entries));
}

class History : public testing::Test {
 protected:
  // The answers so far of all that was asked with `ask`.
  void ask(Future<HistoryStore::Entries> future) {
    scheduler.start(keep(std::move(future), &answers)).detach();
  }
  void visit(const UUID& profile, const std::string& name, int times = 1) {
    for (int i = 0; i < times; ++i) store->recordVisit(profile, page(name), name, scheduler.now());
  }
  VirtualScheduler scheduler;
  std::unique_ptr<HistoryStore> store = HistoryStore::open(scheduler, ":memory:");
  Answers answers;
};

TEST_F(History, AnswersInTheOrderOfAsking) {
  const HistorySearchField field;
  visit(kOne, "a.org");
  visit(kOne, "ab.org", 3);
  visit(kOther, "abc.org");
  ask(store->search(field, "a", kOne, 10, scheduler.now()));
  EXPECT_THAT(answers, IsEmpty());
  scheduler.settle();
  EXPECT_THAT(answers, ElementsAre(ElementsAre("ab.org", "a.org")));
  answers.clear();
  const auto askForAll = [&](const UUID& profile) {
    ask(store->search(HistorySearchField(), "", profile, 10, scheduler.now()));
  };
  store->remove(page("ab.org"), kOne);
  askForAll(kOne);
  store->removeAll(kOne);
  askForAll(kOne);
  askForAll(kOther);
  store->removeAll(std::nullopt);
  askForAll(kOther);
  scheduler.settle();
  EXPECT_THAT(answers,
              ElementsAre(ElementsAre("a.org"), IsEmpty(), ElementsAre("abc.org"), IsEmpty()));
}

TEST_F(History, AnOvertakenSearchDoesNotRun) {
  const HistorySearchField bar, window;
  visit(kOne, "abc.org");
  scheduler.settle();
  ask(store->search(bar, "a", kOne, 10, scheduler.now()));
  ask(store->search(window, "", kOne, 10, scheduler.now()));
  ask(store->search(bar, "ab", kOne, 10, scheduler.now()));
  scheduler.settle();
  EXPECT_THAT(answers, ElementsAre(IsEmpty(), ElementsAre("abc.org"), ElementsAre("abc.org")));
}

TEST(HistoryOnARealQueue, KeepsWhatWasAskedForBeforeTheEnd) {
  const TemporaryFolder folder("history");
  Answers answers;
  {
    GLibScheduler scheduler;
    const auto store = HistoryStore::open(scheduler, folder.path / "history.sqlite");
    for (int i = 0; i < 50; ++i)
      store->recordVisit(kOne, page("a" + std::to_string(i) + ".org"), "", scheduler.now());
    store->removeAll(kOther);
  }
  GLibScheduler scheduler;
  const auto store = HistoryStore::open(scheduler, folder.path / "history.sqlite");
  scheduler.start(keep(store->recent(kOne, 100), &answers)).detach();
  ASSERT_TRUE(eventually([&] { return !answers.empty(); }));
  EXPECT_EQ(answers[0].size(), 50u);
}

}  // namespace
}  // namespace orvel::test
