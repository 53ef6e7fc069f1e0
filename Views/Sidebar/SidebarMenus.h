#pragma once

#include <vector>

#include "Models/Spaces/Space.h"
#include "Views/Support/Menu.h"

namespace orvel {

class BrowserStore;

// The context menu of a tab in this space.
[[nodiscard]] std::vector<MenuEntry> tabMenu(BrowserStore& store,
                                             const std::shared_ptr<Space>& space,
                                             const TabRef& tab);

[[nodiscard]] std::vector<MenuEntry> folderMenu(BrowserStore& store, const FolderRef& folder);

// The menu of a space's seal. Deleting asks first.
[[nodiscard]] std::vector<MenuEntry> spaceMenu(BrowserStore& store,
                                               const std::shared_ptr<Space>& space);

}  // namespace orvel
