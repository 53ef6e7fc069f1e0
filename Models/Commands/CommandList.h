#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Base/Time.h"
#include "Models/CommandBar/Suggestion.h"
#include "Models/Commands/Menu.h"

namespace orvel {

class BrowserStore;

// The main menu, and the commands that the command bar offers.
class CommandList {
 public:
  explicit CommandList(BrowserStore& store) : store_(store) {}

  // Made when first asked for.
  Menu& mainMenu();
  // Those that the query's words name, the palette's first; the command bar shows the first three.
  std::vector<PaletteCommand> commandsMatching(const std::string& query);
  // Those of the action catalog, and one for each other space, as they are now.
  std::vector<PaletteCommand> paletteCommands();
  // One for each row of the main menu that can be chosen; made anew when a second has passed.
  std::vector<PaletteCommand> menuCommands();
  // In glyphs; absent for an item without a key.
  static std::optional<std::string> shortcut(const MenuItem& of);
  // Chooses the item that stands there now; does nothing when there is none or it is disabled.
  void performMenuItem(std::span<const std::string> titles);
  // The same by what the item is, also for a hidden one. Returns whether it was chosen.
  bool performAction(ActionID action);

 private:
  PaletteCommand paletteCommand(ActionID action, const TabRef& tab);
  void addSpaceCommands(std::vector<PaletteCommand>& commands);
  // Adds one for each row of the menu at `path`, and of the menus below it.
  void collect(Menu& menu, const std::vector<std::string>& path,
               std::vector<PaletteCommand>& commands);

  struct MenuCommands {
    Instant time;
    std::vector<PaletteCommand> commands;
  };

  BrowserStore& store_;
  std::unique_ptr<Menu> mainMenu_;
  std::optional<MenuCommands> menuCommands_;
};

}  // namespace orvel
