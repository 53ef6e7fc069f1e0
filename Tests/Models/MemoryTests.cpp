#include "Models/CommandBar/ChoicesFile.h"
#include "Models/CommandBar/PickedChoices.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/SessionFile.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

// What the store remembers of visits and picks.
struct Memory : ModelTest {
  std::string saved() {
    settle();
    return world.file("Choices.json");
  }
  void clearHistory(size_t button) {
    world.desktop.answerAlert = [button](const Alert&) { return AlertAnswer{.button = button}; };
    store().clearHistory();
    settle();
  }
};

const Suggestion kCats = suggestion::Search{.text = "Cats"};
const Suggestion kPage = suggestion::Address{.url = address("https://a.org/")};

TEST_F(Memory, RowsThatLeadToTheSamePlaceShareAKey) {
  const TabRef tab = world.open("https://a.org/");
  const UUID id = UUID::random();
  const struct {
    Suggestion row;
    std::optional<std::string> key;
  } cases[] = {
      {suggestion::Answer{.question = "1+1", .answer = "2"}, std::nullopt},
      {suggestion::Shortcut{.shortcut = {.keyword = "yt"}, .query = "x"}, "shortcut:yt"},
      {kPage, "url:https://a.org/"},
      {suggestion::History{.entry = {.url = address("https://a.org/")}}, "url:https://a.org/"},
      {suggestion::Search{.text = "CATS É"}, "search:cats é"},
      {suggestion::Command{.command = {.id = "tab.new"}}, "command:tab.new"},
      {suggestion::Tab{.tab = tab}, "tab:" + tab->id.text()},
      {suggestion::Archived{.record = {.tab = {.id = id}}}, "archived:" + id.text()}};
  for (const auto& test : cases) EXPECT_EQ(memoryKey(test.row), test.key);
}

TEST_F(Memory, WhatIsPickedTwiceComesFirst) {
  const std::vector<Suggestion> rows = {
      kCats, suggestion::History{.entry = {.url = address("https://a.org/")}}};
  for (int i = 0; i < 2; ++i) store().choices.learn(kPage, "a.o");
  EXPECT_EQ(store().choices.topChoice("a", {rows.data(), 1}), nullptr) << "only what is on offer";
  store().choices.learn(suggestion::Answer{.question = "a", .answer = "b"}, "z");
  EXPECT_THAT(saved(), Not(HasSubstr("\"z\"")));
  store().session.save();
  settle();
  World next(world.disk);
  next.launch();
  EXPECT_EQ(next.store->choices.topChoice(" A.", rows), &rows[1]) << "it lasts";
}

TEST_F(Memory, IsForgottenByAddressByProfileOrAltogether) {
  const UUID here = world.space().profile->id, there = UUID::random();
  const auto fill = [&] {
    store().choices.byProfile.clear();
    store().choices.learn(kPage, "a");
    store().choices.learn(kCats, "a");
    store().choices.byProfile[there] = store().choices.byProfile[here];
  };
  fill();
  store().choices.forgetChoices(here, address("https://a.org/"));
  EXPECT_EQ(store().choices.byProfile[here].choices.at("a").size(), 1u);
  EXPECT_EQ(store().choices.byProfile[there].choices.at("a").size(), 2u);
  store().choices.forgetChoices(UUID::random(), address("https://a.org/"));
  EXPECT_EQ(store().choices.byProfile.size(), 2u);
  fill();
  store().choices.forgetChoices(here);
  settle();
  const auto kept = ChoicesFile::decode(saved());
  ASSERT_TRUE(kept);
  EXPECT_TRUE(kept->size() == 1 && kept->contains(there));
  fill();
  store().choices.forgetChoices();
  EXPECT_THAT(store().choices.byProfile, IsEmpty());
  EXPECT_EQ(saved(), "") << "the file is gone";
}

TEST_F(Memory, HistoryIsClearedAfterAQuestion) {
  const auto pages = [&] { return visits(space().profile->id).size(); };
  load("https://a.org/");
  EXPECT_EQ(pages(), 1u) << "a visit reaches the database";
  store().choices.learn(kCats, "c");
  clearHistory(1);
  EXPECT_EQ(pages(), 1u);
  EXPECT_TRUE(world.desktop.alerts.at(0).alert.isDestructive);
  clearHistory(0);
  EXPECT_EQ(pages(), 0u);
  EXPECT_THAT(store().choices.byProfile, IsEmpty());
  EXPECT_EQ(toast(), "History cleared");

  store().history.reset();
  store().choices.learn(kCats, "c");
  clearHistory(0);
  EXPECT_THAT(store().choices.byProfile, IsEmpty()) << "also without a database";
}

}  // namespace
}  // namespace orvel::test
