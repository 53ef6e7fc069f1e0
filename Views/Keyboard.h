#pragma once

#include <gtk/gtk.h>

namespace orvel {

// Takes the keyboard from a widget and all that is in it, before it leaves the screen. The toolkit
// does so too, but only with the next frame: the keys that come until then would go nowhere.
void releaseKeyboard(GtkWidget* widget);

}  // namespace orvel
