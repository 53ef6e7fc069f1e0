#include "Views/Page/PageMenuView.h"

#include <memory>

#include "Models/Store/BrowserStore.h"

namespace orvel {

std::vector<MenuEntry> pageMenuEntries(BrowserStore& store, const TabRef& tab, const PageHit& hit) {
  std::vector<MenuEntry> entries;
  const auto shared = std::make_shared<const PageHit>(hit);
  for (const PageMenuRow& row : pageMenuRows(hit, pageMenuState(store, *tab))) {
    MenuEntry entry{.title = row.title, .isOn = row.isOn, .beginsSection = row.beginsSection};
    if (row.isEnabled)
      entry.perform = [&store, tab, shared, command = row.command] {
        performPageMenu(store, tab, *shared, command);
      };
    if (row.action) {
      const std::string_view keys = actionInfo(*row.action).keys;
      entry.accelerator = keys.substr(0, keys.find('|'));
    }
    entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace orvel
