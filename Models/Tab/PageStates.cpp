#include "Models/Tab/PageStates.h"

#include <unordered_set>
#include <utility>

#include "Models/Tab/BrowserTab.h"

namespace orvel {

PageStates::PageStates(FileWriter& writer, std::filesystem::path folder)
    : writer_(writer), folder_(std::move(folder)) {}

void PageStates::writeChanged(const TabList& tabs) {
  for (const TabRef& tab : tabs)
    if (tab->pageState.isStale()) write(tab);
}

void PageStates::writeAll(const TabList& tabs) {
  for (const TabRef& tab : tabs)
    if (tab->pageState.isStale() || tab->liveWebView()) write(tab);
}

void PageStates::write(const TabRef& tab) {
  PageState& page = tab->pageState;
  auto state = tab->currentState();
  if (!state && tab->liveWebView()) return;  // until the first page is there
  const auto completion = [weak = std::weak_ptr(tab)](const WriteResult& result) {
    const auto live = weak.lock();
    if (live && !result) live->pageState.markStale();
  };
  if (!state)
    writer_.remove(page.file(), completion);
  else if (state->address != tab->url.peek())
    return;  // on its way to another page
  else
    writer_.write(
        page.file(), [state = *std::move(state)] { return PageState::encoded(state); }, completion);
  page.markWritten();
}

void PageStates::removeOthers(const std::vector<std::string>& found, const TabList& tabs) {
  std::unordered_set<std::string> known;
  for (const TabRef& tab : tabs) known.insert(tab->pageState.file().filename().string());
  for (const std::string& name : found) {
    // A known file's temporary one belongs to a write that may be under way.
    const std::filesystem::path path = folder_ / name;
    const bool isTemporary = path.extension() == ".new";
    if (!known.contains(isTemporary ? path.stem().string() : name)) writer_.remove(path);
  }
}

}  // namespace orvel
