#include "Models/Store/BrowserStore.h"

// Tabs that have been put away.
namespace orvel {

void BrowserStore::reopen(ArchivedTabRecord archived) {
  archive.update([&](auto& records) {
    std::erase_if(records, [&](const auto& one) { return one.tab.id == archived.tab.id; });
  });
  const TabRef tab = openTab(archived.tab.url, {.in = spaceWithID(archived.spaceID)});
  tab->title = archived.tab.title;
  saveArchive();
}

}  // namespace orvel
