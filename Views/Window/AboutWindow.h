#pragma once

#include <gtk/gtk.h>

namespace orvel {

// Shows the window that says what the program is; the same one again while it is open.
void presentAboutWindow(GtkWindow* parent);

}  // namespace orvel
