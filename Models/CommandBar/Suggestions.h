#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "BrowserCore/Answers/CurrencyRates.h"
#include "BrowserCore/Text/TextSearch.h"
#include "Models/CommandBar/CommandBarMode.h"
#include "Models/CommandBar/Suggestion.h"

namespace orvel {

// What the command bar's list is made of.
struct SuggestionSources {
  CommandBarMode mode = CommandBarMode::NewTab;
  std::string_view text;  // as typed
  // What came for the text in the background, or for a former one, the best first.
  std::span<const HistoryStore::Entry> historyMatches;
  std::span<const std::string> engineSuggestions;
  const CurrencyRates* rates = nullptr;  // null before they are known
  std::span<const SearchShortcut> shortcuts;
  std::span<const TabRef> tabs;  // of the active space, in its order
  TabRef selectedTab;            // its selected one; null without
  std::span<const ArchivedTabRecord> archive;
  // As the store's operations of these names; empty: nothing is found.
  std::function<std::vector<PaletteCommand>(const std::string& query)> commandsMatching;
  std::function<const Suggestion*(const std::string& query, std::span<const Suggestion> rows)>
      topChoice;
};

// The rows of the command bar, from the top. For a text: an answer, a keyword search, the address
// that it is, the search for it, the engine's completions, commands, open tabs, visited pages that
// are not open, archived tabs; each with its cap. What the person keeps picking after such a text
// comes first, below an answer only. Without a text a new tab's bar offers the other open tabs.
//
// Cheap enough for every key: the texts of the tabs and the archive are read where they lie.
[[nodiscard]] std::vector<Suggestion> suggestions(const SuggestionSources& sources);

// Whether the title or the address contains the query, in any letter case.
[[nodiscard]] bool matches(const text::Needle& query, std::string_view title,
                           const std::optional<URL>& url);

// Whether a text reads like an address, or like the beginning of one, that nobody else is to see.
[[nodiscard]] bool looksLikeAddress(std::string_view text);

}  // namespace orvel
