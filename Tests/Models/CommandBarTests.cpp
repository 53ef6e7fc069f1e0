#include "Models/CommandBar.h"

#include <gmock/gmock.h>

#include "Tests/Models/World.h"

namespace orvel::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Duration kDebounce = 150ms;

struct CommandBarTest : testing::Test {
  World world;
  std::shared_ptr<CommandBar> bar;

  void SetUp() override {
    world.launch();
    store().settings.searchEngine = SearchEngine::duckDuckGo;
    store().settings.searchSuggestions = true;
  }
  BrowserStore& store() { return *world.store; }

  void show(CommandBarMode mode = CommandBarMode::NewTab) {
    store().showCommandBar(mode);
    bar = CommandBar::make(store(), mode);
    bar->appear();
    world.scheduler.settle();
  }
  void visit(const std::string& url, int times = 1) {
    for (int i = 0; i < times; ++i)
      store().history->recordVisit(world.space().profile->id, address(url), "",
                                   world.scheduler.now());
  }
  static std::string question(const std::string& text) {
    return SearchEngine(SearchEngine::duckDuckGo).suggestionsURL(text)->text();
  }
  void answer(const std::string& text, const std::string& completions) {
    world.network.answers[question(text)] = {.status = 200,
                                             .body = "[\"\", [" + completions + "]]"};
  }
  std::vector<std::string> rows() {
    std::vector<std::string> ids;
    for (const auto& row : bar->suggestions()) ids.push_back(suggestionID(row));
    return ids;
  }
  std::string chosen() { return rows()[bar->selection.peek()]; }
};

TEST_F(CommandBarTest, BeginsAsItsModeSays) {
  world.open("https://one.test/a");
  const struct {
    CommandBarMode mode;
    const char* symbol;
    const char* placeholder;
    const char* text;
  } cases[] = {
      {CommandBarMode::NewTab, "plus.magnifyingglass", "Search, enter address, or type 20+20…", ""},
      {CommandBarMode::CurrentTab, "magnifyingglass", "Enter address…", "https://one.test/a"},
      {CommandBarMode::Quick, "magnifyingglass", "Search, enter address, or type 20+20…", ""}};
  for (const auto& one : cases) {
    show(one.mode);
    EXPECT_EQ(bar->symbol(), one.symbol);
    EXPECT_EQ(bar->placeholder(), one.placeholder);
    EXPECT_EQ(bar->text(), one.text);
  }
  EXPECT_THAT(world.network.requests, IsEmpty()) << "an address is never sent";
}

TEST_F(CommandBarTest, CompletesFromFrequentOpenAndFoundPages) {
  world.open("https://oxford.test/");
  visit("https://www.example.test/deep/page", 3);
  show();
  EXPECT_EQ(bar->complete("Exa"), "Example.test");
  EXPECT_EQ(bar->complete("oxf"), "oxford.test");
  visit("https://later.test/");
  bar->setText("late");
  EXPECT_EQ(bar->complete("late"), std::nullopt);
  world.scheduler.settle();
  EXPECT_EQ(bar->complete("late"), "later.test");
}

TEST_F(CommandBarTest, LateRowsLeaveTheChosenRowAlone) {
  const auto tab = world.open("https://tides.test/", false);
  world.open("https://other.test/");
  visit("https://tidal.test/");
  answer("tid", "\"tide\", \"TID\", \"tidy\"");
  show();
  bar->setText("tid");
  bar->move(1);
  const std::string tabRow = "tab:" + tab->id.text();
  EXPECT_EQ(chosen(), tabRow);
  EXPECT_THAT(rows(), ElementsAre("search:tid", tabRow));
  world.scheduler.settle();
  EXPECT_THAT(rows(), ElementsAre("search:tid", tabRow, "history:https://tidal.test/"));
  world.scheduler.advance(kDebounce);
  EXPECT_THAT(rows(), ElementsAre("search:tid", "search:tide", "search:tidy", tabRow,
                                  "history:https://tidal.test/"));
  EXPECT_EQ(chosen(), tabRow);

  // A row that goes leaves the first one chosen, as does another text.
  bar->move(-1);
  EXPECT_EQ(chosen(), "search:tidy");
  bar->setText("tide");
  EXPECT_EQ(bar->selection.peek(), 0u);
  bar->move(2);
  EXPECT_EQ(chosen(), "search:tidy");
  world.scheduler.advance(kDebounce);
  EXPECT_EQ(bar->selection.peek(), 0u);
}

TEST_F(CommandBarTest, WhatCameForAFormerTextIsDropped) {
  visit("https://abacus.test/");
  answer("ab", "\"abbey\"");
  show();
  bar->setText("ab");
  world.scheduler.turn();  // the history is being searched
  bar->setText("zzz");
  world.scheduler.settle();
  EXPECT_THAT(rows(), ElementsAre("search:zzz"));

  bar->setText("ab");
  world.scheduler.settle();
  while (world.network.requests.empty()) world.scheduler.advance(kDebounce / 10);
  world.network.answers[question("abc")] = {.status = 503};
  bar->setText("abc");
  world.scheduler.advance(2 * kDebounce);
  EXPECT_THAT(rows(), ElementsAre("search:abc"));
  EXPECT_THAT(world.network.requests, ElementsAre(question("ab"), question("abc")));
}

TEST_F(CommandBarTest, AsksTheEngineOnlyForWhatItMayKnow) {
  const struct {
    const char* text;
    bool isAsked;
  } cases[] = {
      {"a", false},         {" a ", false},    {"ab", true},         {"example.com", false},
      {"host/path", false}, {"about:", false}, {"localhost", false}, {"yt lofi", false},
      {"YT lofi", false},   {"yt", true},      {"tea v1.2", true},   {"Straße 4", true},
      {"", false},          {"é", false},
  };
  for (const auto& one : cases) {
    world.network.requests.clear();
    show();
    bar->setText(one.text);
    world.scheduler.advance(kDebounce - 1ms);
    EXPECT_THAT(world.network.requests, IsEmpty()) << one.text;
    world.scheduler.advance(1s);
    EXPECT_EQ(world.network.requests.size(), one.isAsked ? 1u : 0u) << one.text;
  }
  world.network.requests.clear();
  for (const auto forbid : {+[](Settings& s) { s.searchEngine = SearchEngine::startpage; },
                            +[](Settings& s) { s.searchSuggestions = false; }}) {
    forbid(store().settings);
    show();
    bar->setText("tides");
    world.scheduler.advance(1s);
    EXPECT_THAT(world.network.requests, IsEmpty());
  }
}

TEST_F(CommandBarTest, FastTypingAndDismissingAskOnce) {
  show();
  for (const char* text : {"ti", "tid", "tide", "tides"}) {
    bar->setText(text);
    world.scheduler.advance(kDebounce - 10ms);
  }
  world.scheduler.advance(10ms);
  EXPECT_THAT(world.network.requests, ElementsAre(question("tides")));
  bar->setText("tides and");
  world.scheduler.advance(kDebounce - 10ms);
  bar.reset();
  world.scheduler.advance(1s);
  EXPECT_EQ(world.network.requests.size(), 1u);
}

TEST_F(CommandBarTest, TheSelectionGoesRound) {
  show();
  bar->move(1);
  EXPECT_EQ(bar->selection.peek(), 0u) << "an empty list";
  bar->setText("2+2");
  ASSERT_THAT(rows(), ElementsAre("answer:2+2", "search:2+2"));
  const std::pair<int, size_t> moves[] = {{-1, 1}, {1, 0}, {1, 1}, {1, 0}};
  for (const auto& [delta, expected] : moves) {
    bar->move(delta);
    EXPECT_EQ(bar->selection.peek(), expected);
  }
}

TEST_F(CommandBarTest, ReturnCarriesTheChosenRowOutAndLearnsIt) {
  const auto one = world.open("https://one.test/");
  for (int i = 0; i < 2; ++i) {
    const auto selected = world.open("https://selected.test/" + std::to_string(i));
    show();
    bar->setText("one");
    bar->move(1);
    EXPECT_EQ(chosen(), "tab:" + one->id.text());
    bar->submit();
    EXPECT_TRUE(bar->isSpent());
    world.scheduler.settle();
    EXPECT_EQ(world.space().selectedTab(), one);
    EXPECT_EQ(store().commandBar.peek(), std::nullopt);
  }
  world.open("https://selected.test/");
  show();
  bar->setText("one");
  EXPECT_EQ(chosen(), "tab:" + one->id.text()) << "picked twice, first from now on";

  show(CommandBarMode::CurrentTab);
  const auto count = store().everyTab().size();
  bar->setText("tides.test/today");
  bar->submit();
  EXPECT_EQ(world.space().selectedTab()->url.peek()->text(), "https://tides.test/today");
  EXPECT_EQ(store().everyTab().size(), count);

  show(CommandBarMode::CurrentTab);
  bar->setText("");
  bar->submit();
  EXPECT_FALSE(bar->isSpent()) << "no row, no deed";
  EXPECT_NE(store().commandBar.peek(), std::nullopt);
  bar->cancel();
  EXPECT_EQ(store().commandBar.peek(), std::nullopt);
}

TEST_F(CommandBarTest, AQuestionAboutMoneyFetchesTheRates) {
  world.network.answers["https://rates.test/daily.xml"] = {
      .status = 200, .body = "<Cube currency='USD' rate='1.25'/>"};
  show();
  bar->setText("100 eur");
  world.scheduler.settle();
  EXPECT_THAT(world.network.requests, IsEmpty());
  bar->setText("100 eur to usd");
  EXPECT_THAT(rows(), ElementsAre("search:100 eur to usd"));
  world.scheduler.settle();
  EXPECT_THAT(world.network.requests, ElementsAre("https://rates.test/daily.xml"));
  EXPECT_EQ(rows().size(), 2u);
  EXPECT_EQ(rows().front().substr(0, 7), "answer:");
}

TEST_F(CommandBarTest, NoSearchKeepsItAlive) {
  bar = CommandBar::make(store(), CommandBarMode::NewTab);
  bar->appear();
  bar->setText("tides");
  world.scheduler.turn();
  const std::weak_ptr<CommandBar> weak = bar;
  bar.reset();
  EXPECT_TRUE(weak.expired());
}

TEST_F(CommandBarTest, WithoutAHistoryTheRestWorks) {
  store().history.reset();
  show();
  bar->setText("tides");
  world.scheduler.advance(1s);
  EXPECT_THAT(rows(), ElementsAre("search:tides"));
}

}  // namespace
}  // namespace orvel::test
