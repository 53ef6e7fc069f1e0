#include "Models/Store/Archive.h"

#include <unordered_set>
#include <utility>

#include "Models/Store/BrowserStore.h"
#include "Models/Store/SessionFile.h"

namespace orvel {

namespace {

Task<> archiveLoop(std::weak_ptr<BrowserStore> weak) {
  constexpr Duration kInterval = 900s;
  for (;;) {
    {
      const auto store = weak.lock();
      if (!store) co_return;
      store->archive.archiveStaleTabs(store->services().scheduler.now());
    }
    const SleepResult result = co_await sleep(kInterval, SleepClock::Boot);
    if (result == SleepResult::Cancelled) co_return;
  }
}

}  // namespace

void Archive::restore(std::vector<ArchivedTabRecord> archived) { records = std::move(archived); }

void Archive::startArchiving() {
  loop_ = store_.services().scheduler.start(archiveLoop(store_.weak_from_this()));
}

// Empty until the feature is built.
void Archive::archiveStaleTabs(Date) {}

void Archive::reopen(ArchivedTabRecord archived) {
  records.update([&](auto& all) {
    std::erase_if(all, [&](const auto& one) { return one.tab.id == archived.tab.id; });
  });
  const TabRef tab = store_.openTab(archived.tab.url, {.in = store_.spaceWithID(archived.spaceID)});
  tab->title = archived.tab.title;
  store_.session.saveArchive();
}

// Closed tabs

void Archive::didClose(const BrowserTab& tab, const Space& space) {
  closedTabs.update([&](auto& all) { all.push_back({space.id, tab.record()}); });
}

void Archive::forgetClosed(const TabList& tabs) {
  std::unordered_set<UUID> ids;
  for (const TabRef& tab : tabs) ids.insert(tab->id);
  closedTabs.update([&](auto& all) {
    std::erase_if(all, [&](const ClosedTab& closed) { return ids.contains(closed.record.id); });
  });
}

void Archive::reopenClosedTab() {
  if (closedTabs.peek().empty()) return;
  const ClosedTab closed = closedTabs.peek().back();
  closedTabs.update([](auto& all) { all.pop_back(); });
  const TabRef tab = store_.openTab(closed.record.url, {.in = store_.spaceWithID(closed.spaceID)});
  tab->title = closed.record.title;
}

void Archive::forgetSpace(const UUID& space) {
  const auto isOfSpace = [&](const auto& entry) { return entry.spaceID == space; };
  closedTabs.update([&](auto& all) { std::erase_if(all, isOfSpace); });
  records.update([&](auto& all) { std::erase_if(all, isOfSpace); });
}

}  // namespace orvel
