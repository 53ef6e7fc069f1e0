#pragma once

#include "Models/Store/BrowserStore.h"
#include "Views/Support/Menu.h"

namespace orvel {

// The store's main menu as it is now: its menus, and flat at the end the application's own. Empty
// without one.
[[nodiscard]] std::vector<MenuEntry> mainMenuEntries(BrowserStore& store);

}  // namespace orvel
