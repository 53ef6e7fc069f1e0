#pragma once

#include <string>
#include <vector>

#include "Base/Observable.h"
#include "Base/Task.h"
#include "Support/Stores/HistoryStore.h"

namespace orvel {

class BrowserStore;

// The visits of one day.
struct HistorySection {
  std::string title;  // "Today", "Yesterday" or the date
  std::vector<HistoryStore::Entry> entries;

  friend bool operator==(const HistorySection&, const HistorySection&) = default;
};

// By day, the newest day first, and the newest visit first within a day.
[[nodiscard]] std::vector<HistorySection> historySections(std::vector<HistoryStore::Entry> entries,
                                                          Date now);

// What the history window shows: the visits of the active space's profile, or those that match what
// is typed. Reads the store's history and changes it.
class HistoryList {
 public:
  // The store outlives the list.
  explicit HistoryList(BrowserStore& store) : store_(store) {}

  Observable<std::string> query;
  Observable<std::vector<HistorySection>> sections;
  // Whether an answer has come: before the first one nothing is known.
  Observable<bool> hasAnswer = false;

  // Asks for the entries of the present query, which come on a later turn; those of an earlier
  // question never do. To be called when the query or the profile has changed.
  void reload();
  // In a new tab of the active space, with the main window in front.
  void open(const HistoryStore::Entry& entry);
  void copyLink(const HistoryStore::Entry& entry);
  // Takes the entry from the list at once, from the history, and from what was learned of picks.
  void remove(const HistoryStore::Entry& entry);

 private:
  // The list may have ended by the time of the answer: `isCancelled` tells.
  Task<> read(UUID profile, std::string text);

  BrowserStore& store_;
  HistorySearchField field_;
  UUID shownProfile_ = UUID::random();
  // Removed while an answer is awaited, which may still hold them.
  std::vector<URL> removed_;
  // Cancelled by the next question and by the list's end.
  TaskHandle reading_;
};

}  // namespace orvel
