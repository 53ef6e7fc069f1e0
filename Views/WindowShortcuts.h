#pragma once

#include <adwaita.h>

#include "Models/BrowserStore.h"

namespace orvel {

class BrowserView;

// Installs the main window's keys, ahead of the page and the fields. Both arguments outlive the
// window.
void installWindowShortcuts(GtkWidget* window, BrowserStore& store, BrowserView& view);

}  // namespace orvel
