#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Base/Observable.h"
#include "Base/Task.h"
#include "Models/CommandBar/CommandBarMode.h"
#include "Models/CommandBar/Suggestion.h"

namespace orvel {

class BrowserStore;
struct Services;

// One appearance of the command bar: what is typed, what was found for it, and which row is chosen.
// The rows themselves are computed from these and the store whenever they are asked for. Make a new
// one for each appearance; its background work ends with it.
class CommandBar : public std::enable_shared_from_this<CommandBar> {
 public:
  // The store outlives the bar.
  [[nodiscard]] static std::shared_ptr<CommandBar> make(BrowserStore& store, CommandBarMode mode);

  const CommandBarMode mode;
  // The tab that a bar for the present tab is about; null otherwise.
  const TabRef subject;
  // The `subject` of a bar that opens now. Read in an effect, it subscribes to the selection.
  [[nodiscard]] static TabRef subjectOf(const BrowserStore& store, CommandBarMode mode);
  std::string_view symbol() const;
  std::string_view placeholder() const;

  const std::string& text() const { return text_.get(); }
  // What the field shows now. Another text chooses the first row and starts the searches anew.
  void setText(std::string text);

  // The index of the chosen row; may lie behind the last one.
  Observable<size_t> selection = 0u;
  Observable<bool> hasAppeared = false;

  // The rows, from the top. Read in an effect, it subscribes to all that they are made of.
  std::vector<Suggestion> suggestions() const;
  // The text with its completion behind it, from the pages that the person visits most, the open
  // ones and those found; absent without one.
  std::optional<std::string> complete(const std::string& typed) const;

  // The card is on screen.
  void appear();
  // Chooses the row `delta` further down, and goes round at the ends.
  void move(int delta);
  void select(size_t index) { selection = index; }
  // Carries the chosen row out, and learns the pick. Does nothing without one.
  void submit();
  void cancel();

  // A row has been carried out: should the store ask for a bar again, it is another.
  bool isSpent() const { return isSpent_; }

 private:
  CommandBar(BrowserStore& store, CommandBarMode mode);

  void search();
  static Task<> readFrequentURLs(std::weak_ptr<CommandBar> bar);
  static Task<> searchHistory(std::weak_ptr<CommandBar> bar);
  static Task<> searchEngine(std::weak_ptr<CommandBar> bar);
  // Where the engine is asked about the text; absent when it must not learn of it.
  std::optional<URL> engineQuestion() const;
  std::string query() const;
  const UUID& profile() const;
  void animate(const std::function<void()>& change);
  template <class Found>
  void replace(Observable<Found>& former, Found found);
  // Runs `update`, which changes what the rows are made of, and leaves the same row chosen.
  void keepingSelection(const std::function<void()>& update);

  BrowserStore& store_;
  const Services& services_;
  Observable<std::string> text_;
  Observable<HistoryStore::Entries> historyMatches_;
  Observable<std::vector<URL>> frequentURLs_;
  Observable<std::vector<std::string>> engineSuggestions_;
  HistorySearchField typedSearches_;
  // By their ids, the rows that this text had when they were last asked for; absent before.
  mutable std::optional<std::vector<std::string>> knownRows_;
  bool isSpent_ = false;
  TaskHandle frequentTask_;
  TaskHandle historyTask_;
  TaskHandle engineTask_;
};

}  // namespace orvel
