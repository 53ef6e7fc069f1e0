#include "Tests/Models/ModelTest.h"

#include "Models/Store/BrowserStore.h"

namespace orvel::test {

void FakeLittleWindow::close() {
  tab_->isDiscarded = true;
  tab_->teardown();
  store_.littleWindows.littleWindowDidClose(*this);
}

SessionFile& ModelTest::session() { return store().session; }

PickedChoices& ModelTest::choices() { return store().choices; }

TabRef ModelTest::loadAside(const std::string& url) {
  const TabRef tab = BrowserTab::make(
      world.services, {.profile = space().profile, .host = store().tabHost(), .url = address(url)});
  tab->webView();
  settle();
  return tab;
}

static Task<> list(Future<HistoryStore::Entries> pages, std::vector<std::string>& lines) {
  const auto entries = co_await std::move(pages);
  for (const auto& page : entries) lines.push_back(page.url.text() + " " + page.title);
}

std::vector<std::string> ModelTest::visits(const UUID& profile) {
  std::vector<std::string> lines;
  settle();
  world.scheduler.start(list(store().history->recent(profile, 10), lines)).detach();
  settle();
  return lines;
}

std::string ModelTest::toast() {
  const auto& shown = store().toasts.toast.peek();
  return shown ? shown->message : "";
}

}  // namespace orvel::test
