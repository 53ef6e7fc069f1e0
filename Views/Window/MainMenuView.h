#pragma once

#include "Views/Support/Menu.h"

namespace orvel {

class CommandList;

// The main menu as it is now: its menus, and flat at the end the application's own. Empty
// without one.
[[nodiscard]] std::vector<MenuEntry> mainMenuEntries(CommandList& commands);

}  // namespace orvel
