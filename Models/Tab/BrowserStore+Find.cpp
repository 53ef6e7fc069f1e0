#include "Models/Store/BrowserStore.h"

// Finding text in the selected page.
namespace orvel {

void BrowserStore::showFindBar() {
  if (!activeSpace()->selectedTab()) return;
  animate(Spring::quick, [this] {
    commandBar = std::nullopt;
    auto state = find.peek().value_or(FindState());
    ++state.calls;
    find = std::move(state);
  });
}

void BrowserStore::hideFindBar() {
  animate(Spring::quick, [this] { find = std::nullopt; });
  ++latestSearch_;
  endSearch();
  later([](BrowserStore& store) { store.focusWebView(); });
}

void BrowserStore::findNext(BrowserTab::FindDirection direction) {
  const auto tab = activeSpace()->selectedTab();
  const auto& state = find.peek();
  ++latestSearch_;
  if (!tab || !state || state->query.empty()) {
    endSearch();
    return setMatchFound(std::nullopt);
  }
  searchedTab_ = tab;
  services_.scheduler
      .start(findInPage(weak_from_this(), tab, state->query, direction, latestSearch_))
      .detach();
}

Task<> BrowserStore::findInPage(std::weak_ptr<BrowserStore> weak, TabRef tab, std::string query,
                                BrowserTab::FindDirection direction, uint64_t number) {
  Task<bool> search = tab->find(std::move(query), direction);
  const bool isFound = co_await std::move(search);
  const auto store = weak.lock();
  if (!store) co_return;
  // Ended before it was answered: what it has marked since goes, too.
  if (store->searchedTab_.lock() != tab) tab->endFind();
  if (store->latestSearch_ == number) store->setMatchFound(isFound);
}

void BrowserStore::endSearch() {
  if (const auto tab = std::exchange(searchedTab_, {}).lock()) tab->endFind();
}

void BrowserStore::setMatchFound(std::optional<bool> isFound) {
  if (!find.peek()) return;
  animate(Spring::quick, [&] {
    auto state = *find.peek();
    state.matchFound = isFound;
    find = std::move(state);
  });
}

}  // namespace orvel
