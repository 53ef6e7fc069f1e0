#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>

#include "Models/BrowserStore.h"

namespace orvel {

// Installs the catalogue's keys on a window: most ahead of the page and the fields, some behind
// them. They choose from the store's main menu, unless `meansHere` answers for the action itself:
// whether the keys were taken. Everything outlives the window.
void installAccelerators(GtkWidget* window, BrowserStore& store,
                         std::function<std::optional<bool>(ActionID)> meansHere = {});

}  // namespace orvel
