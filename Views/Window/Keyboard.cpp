#include "Views/Window/Keyboard.h"

namespace orvel {

GtkWidget* focusBeside(GtkWidget* widget) {
  auto* root = gtk_widget_get_root(widget);
  return root ? gtk_root_get_focus(root) : nullptr;
}

void releaseKeyboard(GtkWidget* widget) {
  auto* focus = focusBeside(widget);
  if (focus && (focus == widget || gtk_widget_is_ancestor(focus, widget)))
    gtk_root_set_focus(gtk_widget_get_root(widget), nullptr);
}

}  // namespace orvel
