#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Base/Published.h"
#include "Models/Tab/BrowserTab.h"

namespace orvel {

class BrowserStore;

// The find bar.
struct FindState {
  std::string query;
  std::optional<bool> matchFound;  // absent before the first answer
  int calls = 0;                   // grows when the user asks for the bar again

  friend bool operator==(const FindState&, const FindState&) = default;
};

// Finding text in the selected page.
class PageSearch {
 public:
  explicit PageSearch(BrowserStore& store) : store_(store) {}

  Published<std::optional<FindState>, PageSearch> find;  // absent: no bar is open

  void showFindBar();
  void hideFindBar();
  // Another text, whose first match is found at once. Does nothing without a bar.
  void setQuery(std::string query);
  void findNext(BrowserTab::FindDirection direction);
  // A search has ended: unless a later one has begun, the bar tells what came of it.
  void didFind(const TabRef& tab, bool isFound, uint64_t number);

 private:
  void setMatchFound(std::optional<bool> isFound);
  // Takes the marks of the latest search off its page.
  void endSearch();

  BrowserStore& store_;
  // What `find` has left its marks on.
  std::weak_ptr<BrowserTab> searchedTab_;
  // Grows with each search and with the bar's end: earlier answers count no more.
  uint64_t latestSearch_ = 0;
};

}  // namespace orvel
