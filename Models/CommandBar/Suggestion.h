#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "BrowserCore/Addresses/SearchEngine.h"
#include "BrowserCore/Addresses/SearchShortcut.h"
#include "BrowserCore/Addresses/URL.h"
#include "BrowserCore/Session/TabRecord.h"
#include "Engine/Navigation.h"
#include "Models/Spaces/Profile.h"
#include "Support/Stores/HistoryStore.h"

namespace orvel {

// Something that the command bar can run. Identified by `id`.
struct PaletteCommand {
  std::string id;
  std::string title;
  std::string symbol;
  std::vector<std::string> keywords;    // more words that match
  std::optional<std::string> shortcut;  // in glyphs
  std::function<void()> perform;
};

// One row of the command bar's list.
namespace suggestion {
struct Answer {
  std::string question;
  std::string answer;
};
struct Shortcut {
  SearchShortcut shortcut;
  std::string query;
};
struct Address {
  URL url;
  SchemeSource schemeSource = SchemeSource::Given;  // whether its scheme was typed
};
struct Search {
  std::string text;
};
struct Command {
  PaletteCommand command;
};
struct Tab {
  TabRef tab;
};
struct History {
  HistoryStore::Entry entry;
};
struct Archived {
  ArchivedTabRecord record;
};
}  // namespace suggestion

using Suggestion =
    std::variant<suggestion::Answer, suggestion::Shortcut, suggestion::Address, suggestion::Search,
                 suggestion::Command, suggestion::Tab, suggestion::History, suggestion::Archived>;

// What tells the row from the others while the list around it changes. Two searches for the same
// text have the same.
[[nodiscard]] std::string suggestionID(const Suggestion& suggestion);

// What a row shows.
struct SuggestionPresentation {
  // A symbol's name, or the tab whose site's icon it is.
  std::variant<std::string, TabRef> icon;
  std::string title;
  std::optional<std::string> subtitle;
  // What picking it does, shown while the row is selected; a command's is its shortcut, in glyphs.
  std::optional<std::string> action;

  friend bool operator==(const SuggestionPresentation&, const SuggestionPresentation&) = default;
};
[[nodiscard]] SuggestionPresentation presentation(const Suggestion& suggestion,
                                                  SearchEngine searchEngine);

// Under what a pick of the row is remembered: two rows that lead to the same place have the same.
// Absent for rows that are not learned.
[[nodiscard]] std::optional<std::string> memoryKey(const Suggestion& suggestion);

}  // namespace orvel
