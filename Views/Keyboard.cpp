#include "Views/Keyboard.h"

namespace orvel {

void releaseKeyboard(GtkWidget* widget) {
  auto* root = gtk_widget_get_root(widget);
  auto* focus = root ? gtk_root_get_focus(root) : nullptr;
  if (focus && (focus == widget || gtk_widget_is_ancestor(focus, widget)))
    gtk_root_set_focus(root, nullptr);
}

}  // namespace orvel
