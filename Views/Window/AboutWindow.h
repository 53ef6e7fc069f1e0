#pragma once

#include <gtk/gtk.h>

#include <string>

namespace orvel {

// Shows the window that says what the program is; the same one again while it is open.
void presentAboutWindow(GtkWindow* parent, const std::string& version);

}  // namespace orvel
