#pragma once

#include <gtk/gtk.h>

namespace orvel {

// What has the keyboard in the window that the widget stands in; null when nothing has it, or the
// widget stands in no window. The C++ bindings would leak a wrapper for each window that is asked.
GtkWidget* focusBeside(GtkWidget* widget);

// Takes the keyboard from a widget and all that is in it, before it leaves the screen. The toolkit
// does so too, but only with the next frame: the keys that come until then would go nowhere.
void releaseKeyboard(GtkWidget* widget);

}  // namespace orvel
