#include "Models/CommandBar/CommandBar.h"

#include "Models/Settings/Settings.h"
#include "Models/Store/BrowserStore.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

constexpr Duration kDebounce = 150ms;

struct CommandBarTest : ModelTest {
  std::shared_ptr<CommandBar> bar;

  CommandBarTest() {
    store().settings.searchEngine = SearchEngine::duckDuckGo;
    store().settings.searchSuggestions = true;
  }

  void show(CommandBarMode mode = CommandBarMode::NewTab) {
    store().showCommandBar(mode);
    bar = CommandBar::make(store(), mode);
    bar->appear();
    settle();
  }
  void visit(const std::string& url, int times = 1) {
    for (int i = 0; i < times; ++i)
      store().history->recordVisit(space().profile->id, address(url), "", world.scheduler.now());
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

TEST_F(CommandBarTest, CompletesFromFrequentOpenAndFoundPages) {
  world.open("https://oxford.test/");
  visit("https://www.example.test/deep/page", 3);
  show();
  EXPECT_EQ(bar->complete("Exa"), "Example.test");
  EXPECT_EQ(bar->complete("oxf"), "oxford.test");
  visit("https://later.test/");
  bar->setText("late");
  EXPECT_EQ(bar->complete("late"), std::nullopt);
  settle();
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
  settle();
  EXPECT_THAT(rows(), ElementsAre("search:tid", tabRow, "history:https://tidal.test/"));
  advance(kDebounce);
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
  advance(kDebounce);
  EXPECT_EQ(bar->selection.peek(), 0u);
}

TEST_F(CommandBarTest, WhatCameForAFormerTextIsDropped) {
  visit("https://abacus.test/");
  answer("ab", "\"abbey\"");
  show();
  bar->setText("ab");
  world.scheduler.turn();  // the history is being searched
  bar->setText("zzz");
  settle();
  EXPECT_THAT(rows(), ElementsAre("search:zzz"));

  bar->setText("ab");
  settle();
  while (world.network.requests.empty()) advance(kDebounce / 10);
  world.network.answers[question("abc")] = {.status = 503};
  bar->setText("abc");
  advance(2 * kDebounce);
  EXPECT_THAT(rows(), ElementsAre("search:abc"));
  EXPECT_THAT(world.network.requests, ElementsAre(question("ab"), question("abc")));
}

TEST_F(CommandBarTest, AsksTheEngineOnlyForWhatItMayKnow) {
  const std::pair<const char*, bool> cases[] = {
      {"a", false},         {" a ", false},    {"ab", true},         {"example.com", false},
      {"host/path", false}, {"about:", false}, {"localhost", false}, {"yt lofi", false},
      {"YT lofi", false},   {"yt", true},      {"tea v1.2", true},   {"Straße 4", true},
      {"", false},          {"é", false},      {"http://a b", true},
  };
  for (const auto& [text, isAsked] : cases) {
    world.network.requests.clear();
    show();
    bar->setText(text);
    advance(kDebounce - 1ms);
    EXPECT_THAT(world.network.requests, IsEmpty()) << text;
    advance(1s);
    EXPECT_THAT(world.network.requests, SizeIs(isAsked ? 1 : 0)) << text;
  }
  world.network.requests.clear();
  for (const auto forbid : {+[](Settings& s) { s.searchEngine = SearchEngine::startpage; },
                            +[](Settings& s) { s.searchSuggestions = false; }}) {
    forbid(store().settings);
    show();
    bar->setText("tides");
    advance(1s);
    EXPECT_THAT(world.network.requests, IsEmpty());
  }
}

TEST_F(CommandBarTest, ReturnCarriesTheChosenRowOutAndLearnsIt) {
  const auto one = world.open("https://one.test/");
  for (int i = 0; i < 2; ++i) {
    world.open("https://selected.test/" + std::to_string(i));
    show();
    bar->setText("one");
    bar->move(1);
    EXPECT_EQ(chosen(), "tab:" + one->id.text());
    bar->submit();
    EXPECT_TRUE(bar->isSpent());
    settle();
    EXPECT_EQ(selected(), one);
    EXPECT_EQ(store().commandBar.peek(), std::nullopt);
  }

  for (const auto mode : {CommandBarMode::CurrentTab, CommandBarMode::NewTab})
    for (const auto& [typed, scheme] : {std::pair("tides.test", SchemeSource::Supplied),
                                        {" router.test/ ", SchemeSource::Supplied},
                                        {"https://tides.test/a", SchemeSource::Given}}) {
      show(mode);
      bar->setText(typed);
      bar->submit();
      selected()->webView();
      EXPECT_EQ(world.view(selected())->requests.back().schemeSource, scheme) << typed;
      settle();
    }

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
  settle();
  EXPECT_THAT(world.network.requests, IsEmpty());
  bar->setText("100 eur to usd");
  EXPECT_THAT(rows(), ElementsAre("search:100 eur to usd"));
  settle();
  EXPECT_THAT(world.network.requests, ElementsAre("https://rates.test/daily.xml"));
  EXPECT_EQ(rows().size(), 2u);
  EXPECT_EQ(rows().front().substr(0, 7), "answer:");
}

}  // namespace
}  // namespace orvel::test
