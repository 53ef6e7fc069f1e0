#pragma once

#include "Models/Commands/Menu.h"

namespace orvel {

class BrowserStore;

namespace MainMenu {

// The whole main menu: one item for each of its nine menus, the application's own first. It acts on
// the store, which outlives it.
[[nodiscard]] Menu make(BrowserStore& store);

}  // namespace MainMenu
}  // namespace orvel
