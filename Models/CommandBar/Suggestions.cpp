#include "Models/CommandBar/Suggestions.h"

#include <algorithm>

#include "BrowserCore/Addresses/URLInput.h"
#include "BrowserCore/Answers/QuickAnswer.h"
#include "BrowserCore/Text/LetterCase.h"
#include "BrowserCore/Text/Text.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

namespace {

constexpr size_t kMaxUntypedTabs = 6;
constexpr size_t kMaxCompletions = 3;
constexpr size_t kMaxCommands = 3;
constexpr size_t kMaxTabs = 5;
constexpr size_t kMaxVisits = 4;
constexpr size_t kMaxArchived = 3;

using Rows = std::vector<Suggestion>;

// Adds a row for each of the first `limit` items that are wanted.
template <class Items, class Predicate, class Row>
void addFirst(size_t limit, const Items& items, Rows& rows, Predicate isWanted, Row row) {
  for (const auto& item : items) {
    if (limit == 0) return;
    if (!isWanted(item)) continue;
    rows.push_back(row(item));
    --limit;
  }
}

Suggestion tabRow(const TabRef& tab) { return suggestion::Tab{tab}; }

bool matchesTab(const text::Needle& query, const BrowserTab& tab) {
  const std::string& title = tab.title;
  return title.empty() ? matches(query, tab.displayTitle(), tab.url)
                       : matches(query, title, tab.url);
}

void addTypedRows(const SuggestionSources& sources, const std::string& query, Rows& rows) {
  if (auto answer = QuickAnswer::evaluate(query, sources.rates))
    rows.push_back(suggestion::Answer{std::move(answer->question), std::move(answer->answer)});
  if (auto match = SearchShortcut::match(query, sources.shortcuts))
    rows.push_back(suggestion::Shortcut{std::move(match->shortcut), std::move(match->query)});
  if (auto url = URLInput::explicitURL(query)) {
    const auto scheme = url->text() == query ? SchemeSource::Given : SchemeSource::Supplied;
    rows.push_back(suggestion::Address{std::move(*url), scheme});
  }
  rows.push_back(suggestion::Search{query});
  addFirst(
      kMaxCompletions, sources.engineSuggestions, rows,
      [typed = text::lowerCased(query)](const std::string& completion) {
        return text::lowerCased(completion) != typed;
      },
      [](const std::string& completion) -> Suggestion { return suggestion::Search{completion}; });
}

void addFoundRows(const SuggestionSources& sources, const std::string& query, Rows& rows) {
  if (sources.commandsMatching)
    addFirst(
        kMaxCommands, sources.commandsMatching(query), rows,
        [](const PaletteCommand&) { return true; },
        [](const PaletteCommand& command) -> Suggestion { return suggestion::Command{command}; });
  const text::Needle needle(query);
  addFirst(
      kMaxTabs, sources.tabs, rows,
      [&](const TabRef& tab) { return tab != sources.selectedTab && matchesTab(needle, *tab); },
      tabRow);
  const auto isOpen = [&](const URL& url) {
    return std::ranges::any_of(sources.tabs,
                               [&](const TabRef& tab) { return tab->url.get() == url; });
  };
  addFirst(
      kMaxVisits, sources.historyMatches, rows,
      [&](const HistoryStore::Entry& entry) { return !isOpen(entry.url); },
      [](const HistoryStore::Entry& entry) -> Suggestion { return suggestion::History{entry}; });
  addFirst(
      kMaxArchived, sources.archive, rows,
      [&](const ArchivedTabRecord& record) {
        return matches(needle, record.tab.title, record.tab.url);
      },
      [](const ArchivedTabRecord& record) -> Suggestion { return suggestion::Archived{record}; });
}

void promote(const SuggestionSources& sources, const std::string& query, Rows& rows) {
  const Suggestion* top = sources.topChoice ? sources.topChoice(query, rows) : nullptr;
  if (!top) return;
  const auto chosen = std::ranges::find(rows, suggestionID(*top), suggestionID);
  auto place = rows.begin();
  if (std::holds_alternative<suggestion::Answer>(*place)) ++place;
  if (place < chosen) std::rotate(place, chosen, chosen + 1);
}

}  // namespace

std::vector<Suggestion> suggestions(const SuggestionSources& sources) {
  const std::string query(text::trimmed(sources.text));
  Rows rows;
  if (!query.empty()) {
    addTypedRows(sources, query, rows);
    addFoundRows(sources, query, rows);
    promote(sources, query, rows);
  } else if (sources.mode == CommandBarMode::NewTab) {
    addFirst(
        kMaxUntypedTabs, sources.tabs, rows,
        [&](const TabRef& tab) { return tab != sources.selectedTab; }, tabRow);
  }
  return rows;
}

bool matches(const text::Needle& query, std::string_view title, const std::optional<URL>& url) {
  return query.isIn(title) || (url && query.isIn(url->text()));
}

bool looksLikeAddress(std::string_view text) {
  if (URLInput::explicitURL(text)) return true;
  return text.find(' ') == std::string_view::npos &&
         text.find_first_of(".:/") != std::string_view::npos;
}

}  // namespace orvel
