#include "Models/Tab/PageSearch.h"

#include <utility>

#include "Models/Store/BrowserStore.h"

namespace orvel {

namespace {

Task<> findInPage(std::weak_ptr<BrowserStore> weak, TabRef tab, std::string query,
                  BrowserTab::FindDirection direction, uint64_t number) {
  Task<bool> search = tab->find(std::move(query), direction);
  const bool isFound = co_await std::move(search);
  if (const auto store = weak.lock()) store->pageSearch.didFind(tab, isFound, number);
}

}  // namespace

void PageSearch::showFindBar() {
  if (!store_.activeSpace()->selectedTab()) return;
  store_.animate(Spring::quick, [this] {
    store_.hideCommandBar();
    auto state = find.peek().value_or(FindState());
    ++state.calls;
    find = std::move(state);
  });
}

void PageSearch::hideFindBar() {
  store_.animate(Spring::quick, [this] { find = std::nullopt; });
  ++latestSearch_;
  endSearch();
  store_.later([this] { store_.focusWebView(); });
}

void PageSearch::setQuery(std::string query) {
  if (!find.peek()) return;
  find.update([&](auto& state) { state->query = std::move(query); });
  findNext(BrowserTab::FindDirection::Forwards);
}

void PageSearch::findNext(BrowserTab::FindDirection direction) {
  const auto tab = store_.activeSpace()->selectedTab();
  const auto& state = find.peek();
  ++latestSearch_;
  if (!tab || !state || state->query.empty()) {
    endSearch();
    return setMatchFound(std::nullopt);
  }
  searchedTab_ = tab;
  store_.services()
      .scheduler
      .start(findInPage(store_.weak_from_this(), tab, state->query, direction, latestSearch_))
      .detach();
}

void PageSearch::didFind(const TabRef& tab, bool isFound, uint64_t number) {
  // Ended before it was answered: what it has marked since goes, too.
  if (searchedTab_.lock() != tab) tab->endFind();
  if (latestSearch_ == number) setMatchFound(isFound);
}

void PageSearch::endSearch() {
  if (const auto tab = std::exchange(searchedTab_, {}).lock()) tab->endFind();
}

void PageSearch::setMatchFound(std::optional<bool> isFound) {
  if (!find.peek()) return;
  store_.animate(Spring::quick, [&] {
    auto state = *find.peek();
    state.matchFound = isFound;
    find = std::move(state);
  });
}

}  // namespace orvel
