#include "Views/Window/MainMenuView.h"

#include <algorithm>

#include "Base/Texts.h"
#include "DesignSystem/ShownText.h"
#include "Models/Commands/CommandList.h"

namespace orvel {

namespace {

// The application's own items in the order in which they end the menu.
constexpr ActionID kOwn[] = {ActionID::Settings, ActionID::CheckForUpdates, ActionID::About,
                             ActionID::Quit};

std::string shownTitle(const MenuItem& item) {
  const bool isOurs = item.action && item.title == actionInfo(*item.action).title;
  return isOurs || item.submenu ? _(item.title.c_str()) : shownText(item.title);
}

MenuEntry entryFor(const MenuItem& item) {
  MenuEntry entry{.title = shownTitle(item)};
  if (item.isEnabled()) entry.perform = item.perform;
  if (item.isOn) entry.isOn = item.isOn();
  if (item.action) {
    const std::string_view keys = actionInfo(*item.action).keys;
    entry.accelerator = keys.substr(0, keys.find('|'));
  }
  return entry;
}

std::vector<MenuEntry> entriesOf(Menu& menu) {
  menu.update();
  std::vector<MenuEntry> entries;
  bool beginsSection = false;
  for (const MenuItem& item : menu.items) {
    if (item.isHidden) continue;
    beginsSection |= item.isSeparator();
    if (item.isSeparator()) continue;
    entries.push_back(entryFor(item));
    entries.back().beginsSection = std::exchange(beginsSection, false);
  }
  return entries;
}

}  // namespace

std::vector<MenuEntry> mainMenuEntries(CommandList& commands) {
  const auto& menus = commands.mainMenu().items;
  std::vector<MenuEntry> entries;
  for (auto menu = menus.begin() + 1; menu != menus.end(); ++menu)
    entries.push_back({.title = shownTitle(*menu), .submenu = entriesOf(*menu->submenu)});
  const auto& own = menus.front().submenu->items;
  for (const ActionID action : kOwn) {
    const auto item = std::ranges::find(own, std::optional(action), &MenuItem::action);
    if (item == own.end()) continue;
    entries.push_back(entryFor(*item));
    entries.back().beginsSection = action == ActionID::Settings || action == ActionID::Quit;
  }
  return entries;
}

}  // namespace orvel
