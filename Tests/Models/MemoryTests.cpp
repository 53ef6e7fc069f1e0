#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Models/ChoicesFile.h"
#include "Tests/Models/World.h"

namespace orvel::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// What the store remembers of visits and picks.
class Memory : public testing::Test {
 protected:
  Memory() { world.launch(); }
  BrowserStore& store() { return *world.store; }
  std::string saved() {
    world.scheduler.settle();
    return world.file("Choices.json");
  }
  World world;
};

const Suggestion kCats = suggestion::Search{.text = "Cats"};
const Suggestion kPage = suggestion::Address{.url = address("https://a.org/")};

Task<> countPages(Future<HistoryStore::Entries> pages, size_t* answer) {
  const auto entries = co_await std::move(pages);
  *answer = entries.size();
}

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
  store().learn(kPage, "a.o");
  EXPECT_EQ(store().topChoice("a", rows), nullptr);
  store().learn(kPage, "a.o");
  EXPECT_EQ(store().topChoice("a", rows), &rows[1]);
  EXPECT_EQ(store().topChoice("a", {rows.data(), 1}), nullptr) << "only what is on offer";
  store().learn(suggestion::Answer{.question = "a", .answer = "b"}, "z");
  EXPECT_THAT(saved(), HasSubstr("url:https://a.org/"));
  EXPECT_THAT(saved(), Not(HasSubstr("\"z\"")));

  store().save();
  world.scheduler.settle();
  World next(world.disk);
  next.launch();
  EXPECT_EQ(next.store->topChoice(" A.", rows), &rows[1]) << "it lasts";
}

TEST_F(Memory, APrivateProfileLearnsNothing) {
  const auto profile =
      std::make_shared<Profile>(world.engine, UUID::random(), "P", Profile::Privacy::Private);
  const auto space = std::make_shared<Space>(UUID::random(), profile, "P", "leaf.fill", 0.0);
  store().spaces.update([&](auto& list) { list.push_back(space); });
  store().switchTo(space);
  store().learn(kCats, "c");
  EXPECT_THAT(store().choices, IsEmpty());
}

TEST_F(Memory, IsForgottenByAddressByProfileOrAltogether) {
  const UUID here = world.space().profile->id, there = UUID::random();
  const auto fill = [&] {
    store().choices.clear();
    store().learn(kPage, "a");
    store().learn(kCats, "a");
    store().choices[there] = store().choices[here];
  };
  fill();
  store().forgetChoices(here, address("https://a.org/"));
  EXPECT_EQ(store().choices[here].choices.at("a").size(), 1u);
  EXPECT_EQ(store().choices[there].choices.at("a").size(), 2u);
  store().forgetChoices(UUID::random(), address("https://a.org/"));
  EXPECT_EQ(store().choices.size(), 2u);
  fill();
  store().forgetChoices(here);
  world.scheduler.settle();
  const auto kept = ChoicesFile::decode(saved());
  ASSERT_TRUE(kept);
  EXPECT_TRUE(kept->size() == 1 && kept->contains(there));
  fill();
  store().forgetChoices();
  EXPECT_THAT(store().choices, IsEmpty());
  EXPECT_EQ(saved(), "") << "the file is gone";
}

TEST_F(Memory, HistoryIsClearedAfterAQuestion) {
  const auto pages = [&] {
    size_t count = 0;
    world.scheduler
        .start(countPages(store().history->recent(world.space().profile->id, 10), &count))
        .detach();
    world.scheduler.settle();
    return count;
  };
  world.open("https://a.org/");
  world.scheduler.settle();
  EXPECT_EQ(pages(), 1u) << "a visit reaches the database";
  store().learn(kCats, "c");
  store().window = &world.window;
  world.desktop.answerAlert = [](const Alert&) { return AlertAnswer{.button = 1}; };
  store().clearHistory();
  world.scheduler.settle();
  EXPECT_EQ(pages(), 1u);
  const Alert& alert = world.desktop.alerts.at(0).alert;
  EXPECT_EQ(world.desktop.alerts[0].parent, &world.window);
  EXPECT_EQ(alert.messageText, "Clear all browsing history?");
  EXPECT_EQ(alert.informativeText,
            "Visited pages, and what the command bar learned you pick, are forgotten in every "
            "profile. Open tabs, favorites and the archive stay.");
  EXPECT_THAT(alert.buttons, ElementsAre("Clear History", "Cancel"));
  EXPECT_TRUE(alert.isDestructive);

  world.desktop.answerAlert = [](const Alert&) { return AlertAnswer{.button = 0}; };
  store().clearHistory();
  world.scheduler.settle();
  EXPECT_EQ(pages(), 0u);
  EXPECT_THAT(store().choices, IsEmpty());
  ASSERT_TRUE(store().toast.peek());
  EXPECT_EQ(store().toast.peek()->message, "History cleared");
  EXPECT_FALSE(store().toast.peek()->undo);
}

TEST_F(Memory, WithoutHistoryClearingForgetsWhatWasLearned) {
  store().history.reset();
  store().learn(kCats, "c");
  world.desktop.answerAlert = [](const Alert&) { return AlertAnswer{.button = 0}; };
  store().clearHistory();
  world.scheduler.settle();
  EXPECT_THAT(store().choices, IsEmpty());
}

}  // namespace
}  // namespace orvel::test
