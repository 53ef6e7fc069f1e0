#pragma once

#include <vector>

#include "Models/Commands/PageMenu.h"
#include "Views/Support/Menu.h"

namespace orvel {

// The menu for what the tab's page has there. The store outlives it.
[[nodiscard]] std::vector<MenuEntry> pageMenuEntries(BrowserStore& store, const TabRef& tab,
                                                     const PageHit& hit);

}  // namespace orvel
