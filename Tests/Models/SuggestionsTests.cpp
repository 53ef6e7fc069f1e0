#include "Models/CommandBar/PickedChoices.h"
#include "Models/CommandBar/Suggestions.h"

#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

struct SuggestionsTest : ModelTest {
  TabList tabs;
  std::vector<HistoryStore::Entry> visits;
  std::vector<std::string> completions;
  std::vector<ArchivedTabRecord> archive;
  std::vector<PaletteCommand> commands;
  std::optional<CurrencyRates> rates;

  TabRef addTab(const std::string& title, const std::string& url) {
    const auto tab = world.open(url, false);
    tab->title = title;
    tabs.push_back(tab);
    return tab;
  }
  void addVisit(const std::string& url, const std::string& title = "") {
    visits.push_back({.url = address(url), .title = title});
  }
  void addArchived(const std::string& title, const std::string& url) {
    archive.push_back({.tab = {.id = UUID::random(), .title = title, .url = address(url)}});
  }
  void pickTwice(const std::string& query, const std::string& key) {
    ChoiceMemory& memory = choices().byProfile[space().profile->id];
    for (int i = 0; i < 2; ++i) memory.record(query, key, Date());
  }

  std::vector<Suggestion> rows(const std::string& text,
                               CommandBarMode mode = CommandBarMode::NewTab) {
    return suggestions({.mode = mode,
                        .text = text,
                        .historyMatches = visits,
                        .engineSuggestions = completions,
                        .rates = rates ? &*rates : nullptr,
                        .shortcuts = SearchShortcut::builtIn(),
                        .tabs = tabs,
                        .selectedTab = tabs.empty() ? nullptr : tabs.front(),
                        .archive = archive,
                        .commandsMatching = [this](const auto&) { return commands; },
                        .topChoice =
                            [this](const auto& query, std::span<const Suggestion> offered) {
                              return choices().topChoice(query, offered);
                            }});
  }
  // The rows' kinds and titles: "search:tides".
  std::vector<std::string> shown(const std::string& text,
                                 CommandBarMode mode = CommandBarMode::NewTab) {
    std::vector<std::string> result;
    for (const auto& row : rows(text, mode)) {
      const std::string id = suggestionID(row);
      result.push_back(id.substr(0, id.find(':') + 1) +
                       presentation(row, SearchEngine::google).title);
    }
    return result;
  }
};

TEST_F(SuggestionsTest, ReadsWhatIsTyped) {
  rates = CurrencyRates({{"USD", 1.25}});
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"2+2", {"answer:4", "search:2+2"}},
      {"  2+2\n", {"answer:4", "search:2+2"}},
      {"10 km to mi", {"answer:6.21 mi", "search:10 km to mi"}},
      {"yt lofi", {"shortcut:lofi", "search:yt lofi"}},
      {"example.com", {"url:https://example.com", "search:example.com"}},
      {"tides", {"search:tides"}},
      {"a", {"search:a"}},
      {" \n", {}},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(shown(text), expected) << text;
  EXPECT_EQ(shown("100 eur to usd").size(), 2u);
  rates.reset();
  EXPECT_EQ(shown("100 eur to usd").size(), 1u) << "no rates, no answer";
}

TEST_F(SuggestionsTest, KeepsTheOrderAndTheCaps) {
  addTab("The selected tide", "https://selected.test/");
  for (int i = 0; i < 7; ++i)
    addTab("Tide " + std::to_string(i), "https://tab" + std::to_string(i) + ".test/");
  // Open, though behind the five tabs that are shown; and open in the selected one.
  addVisit("https://tab6.test/", "Tide 6");
  addVisit("https://selected.test/");
  for (int i = 0; i < 5; ++i) addVisit("https://visit" + std::to_string(i) + ".test/");
  addArchived("Nothing of it", "https://nothing.test/");
  for (int i = 0; i < 4; ++i) addArchived("", "https://TIDE" + std::to_string(i) + ".test/");
  completions = {"TIDE", "tide one", "tide two", "tide three", "tide four"};
  for (const char* id : {"a", "b", "c", "d"}) commands.push_back({.id = id, .title = id});
  EXPECT_THAT(shown("tide"),
              ElementsAre("search:tide", "search:tide one", "search:tide two", "search:tide three",
                          "command:a", "command:b", "command:c", "tab:Tide 0", "tab:Tide 1",
                          "tab:Tide 2", "tab:Tide 3", "tab:Tide 4", "history:visit0.test",
                          "history:visit1.test", "history:visit2.test", "history:visit3.test",
                          "archived:TIDE0.test", "archived:TIDE1.test", "archived:TIDE2.test"));
}

TEST_F(SuggestionsTest, WithoutATextANewTabsBarOffersTheOtherTabs) {
  for (int i = 0; i < 9; ++i)
    addTab("Tab " + std::to_string(i), "https://tab" + std::to_string(i) + ".test/");
  EXPECT_THAT(shown(" "), ElementsAre("tab:Tab 1", "tab:Tab 2", "tab:Tab 3", "tab:Tab 4",
                                      "tab:Tab 5", "tab:Tab 6"));
  EXPECT_TRUE(shown("", CommandBarMode::CurrentTab).empty());
  EXPECT_TRUE(shown("", CommandBarMode::Quick).empty());
}

TEST_F(SuggestionsTest, WhatIsAlwaysPickedComesFirstBelowAnAnswer) {
  addTab("Selected", "https://selected.test/");
  const auto tides = addTab("Tides", "https://tides.test/");
  pickTwice("ti", "tab:" + tides->id.text());
  pickTwice("2+2", "search:2+2");
  pickTwice("example.com", "search:example.com");
  pickTwice("gone", "url:https://gone.test/");
  EXPECT_THAT(shown("ti"), ElementsAre("tab:Tides", "search:ti"));
  EXPECT_THAT(shown("2+2"), ElementsAre("answer:4", "search:2+2"));
  EXPECT_THAT(shown("example.com"), ElementsAre("search:example.com", "url:https://example.com"));
  EXPECT_THAT(shown("gone"), ElementsAre("search:gone"));
  // A pick of the address is one of the page in the history, too: the first of the two moves.
  addVisit("https://selected.test/other");
  pickTwice("selected.test/other", "url:https://selected.test/other");
  EXPECT_EQ(shown("selected.test/other").front(), "url:https://selected.test/other");
}

}  // namespace
}  // namespace orvel::test
