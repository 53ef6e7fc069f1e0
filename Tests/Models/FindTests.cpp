#include <gmock/gmock.h>

#include "Tests/Models/World.h"

namespace orvel {
namespace {

using Direction = BrowserTab::FindDirection;

struct FindTest : testing::Test {
  FindTest() {
    tab = world.launch().open("https://one.test/");
    tab->webView();
    world.view(tab)->pageText = "one word, and late words";
    world.scheduler.settle();
  }
  std::optional<FindState> search(const std::string& query,
                                  Direction direction = Direction::Forwards) {
    world.store->find.update([&](auto& state) { state->query = query; });
    world.store->findNext(direction);
    world.scheduler.settle();
    return world.store->find.peek();
  }
  test::World world;
  TabRef tab;
};

TEST_F(FindTest, KeepsTheQueryWhenItIsShownAgainAndTellsOfMatches) {
  auto& store = *world.store;
  store.findNext(Direction::Forwards);
  world.scheduler.settle();
  EXPECT_FALSE(store.find.peek()) << "nothing is shown, nothing is searched";

  store.showFindBar();
  EXPECT_EQ(store.find.peek(), FindState());
  EXPECT_EQ(search("word"), (FindState{"word", true}));
  store.showFindBar();
  EXPECT_EQ(store.find.peek(), (FindState{"word", true}));
  EXPECT_EQ(search("wordy", Direction::Backwards), (FindState{"wordy", false}));
  EXPECT_EQ(search(""), FindState()) << "an empty field is no search without a match";
  EXPECT_FALSE(world.view(tab)->hasMarks);
  EXPECT_THAT(world.view(tab)->searches, testing::ElementsAre("word", "wordy backwards"));
}

TEST_F(FindTest, TakesItsMarksOffThePageThatWasSearched) {
  world.store->showFindBar();
  search("word");
  EXPECT_TRUE(world.view(tab)->hasMarks);
  world.open("https://two.test/");
  world.store->hideFindBar();
  EXPECT_FALSE(world.view(tab)->hasMarks);
}

TEST_F(FindTest, ForgetsAnAnswerThatComesAfterItsEnd) {
  world.store->showFindBar();
  world.store->find.update([](auto& state) { state->query = "late"; });
  world.store->findNext(Direction::Forwards);
  world.store->hideFindBar();
  world.scheduler.settle();
  EXPECT_FALSE(world.store->find.peek());

  world.store->close(tab);
  world.store->showFindBar();
  EXPECT_FALSE(world.store->find.peek()) << "without a tab there is nothing to search";
}

}  // namespace
}  // namespace orvel
