#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>

#include "Models/Commands/ActionCatalog.h"

namespace orvel {

class CommandList;

// Installs the catalog's keys on a window: most ahead of the page and the fields, some behind
// them. They choose from the main menu, unless `meansHere` answers for the action itself:
// whether the keys were taken. Everything outlives the window.
void installAccelerators(GtkWidget* window, CommandList& commands,
                         std::function<std::optional<bool>(ActionID)> meansHere = {});

// What a window's keys do while a sheet stands on the main one: they end the program and move,
// close and resize windows. All the others would act below the sheet.
[[nodiscard]] bool worksUnderSheet(ActionID action);

}  // namespace orvel
