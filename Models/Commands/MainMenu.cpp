#include "Models/Commands/MainMenu.h"

#include <utility>

#include "Base/Texts.h"
#include "Models/Commands/Actions.h"
#include "Models/Commands/CommandTarget.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

namespace {

constexpr struct {
  MenuName name;
  const char* title;
} kMenus[] = {{MenuName::Application, "Orvel"},   {MenuName::File, N_("File")},
              {MenuName::Edit, N_("Edit")},       {MenuName::View, N_("View")},
              {MenuName::History, N_("History")}, {MenuName::Tabs, N_("Tabs")},
              {MenuName::Spaces, N_("Spaces")},   {MenuName::Window, N_("Window")},
              {MenuName::Help, N_("Help")}};

TabRef tabFor(const BrowserStore& store, ActsOn subject) {
  switch (subject) {
    case ActsOn::Tab:
      return store.target.targetTab();
    case ActsOn::CommandTab:
      return store.target.commandTab();
    default:
      return nullptr;
  }
}

MenuItem itemFor(BrowserStore& store, ActionID id) {
  const ActionInfo& action = actionInfo(id);
  MenuItem item{.title = _(action.title),
                .action = id,
                .perform =
                    [&store, id, subject = action.actsOn] {
                      if (subject == ActsOn::MainWindow && !store.target.isMainWindowKey()) return;
                      Actions::perform(store, id, tabFor(store, subject));
                    },
                .isHidden = action.place.isHidden};
  if (action.isMarked)
    item.isOn = [&store, id, subject = action.actsOn] {
      return Actions::isOn(store, id, tabFor(store, subject));
    };
  if (action.actsOn == ActsOn::ActiveWindow)
    item.isAvailable = [&store] {
      return store.services().desktop.application.activeWindow() != nullptr;
    };
  return item;
}

std::vector<MenuItem> itemsOf(BrowserStore& store, MenuName menu) {
  std::vector<MenuItem> items;
  int section = 0;
  for (const ActionInfo& action : actionCatalog()) {
    if (action.place.menu != menu) continue;
    if (std::exchange(section, action.place.section) != action.place.section) items.emplace_back();
    items.push_back(itemFor(store, action.id));
  }
  return items;
}

// A row for each space, ahead of those of the catalog.
std::vector<MenuItem> spaceItems(BrowserStore& store) {
  std::vector<MenuItem> items;
  for (const auto& space : store.spaces.peek()) {
    const auto index = static_cast<int>(items.size());
    items.push_back(
        {.title = space->name.peek(),
         .action = index < kNumberedActions ? std::optional(spaceAction(index)) : std::nullopt,
         .perform = [&store, space] { store.switching.switchTo(space); },
         .isOn = [&store, space] { return store.activeSpace() == space; }});
  }
  items.emplace_back();
  items.push_back(itemFor(store, ActionID::NewSpace));
  for (MenuItem& item : itemsOf(store, MenuName::Spaces)) items.push_back(std::move(item));
  return items;
}

Menu make(BrowserStore& store, MenuName name) {
  if (name == MenuName::Spaces) return {.makeItems = [&store] { return spaceItems(store); }};
  return {.items = itemsOf(store, name)};
}

}  // namespace

Menu MainMenu::make(BrowserStore& store) {
  Menu main;
  for (const auto& [name, title] : kMenus) {
    auto menu = std::make_shared<Menu>(orvel::make(store, name));
    menu->title = _(title);
    main.items.push_back({.title = menu->title, .submenu = std::move(menu)});
  }
  return main;
}

}  // namespace orvel
