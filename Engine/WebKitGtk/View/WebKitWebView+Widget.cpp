#include <adwaita.h>

#include <algorithm>

#include "Engine/WebKitGtk/View/WebKitWebView.h"

// The view as a widget in a window, and what the program sets on it.
namespace orvel {

double WebKitWebView::pageZoom() const { return webkit_web_view_get_zoom_level(view_.get()); }
void WebKitWebView::setPageZoom(double zoom) { webkit_web_view_set_zoom_level(view_.get(), zoom); }

void WebKitWebView::setBackground(const Color& color, double opacity) {
  const auto share = [](uint8_t value) { return static_cast<float>(value) / 255; };
  const GdkRGBA native{share(color.red), share(color.green), share(color.blue),
                       static_cast<float>(opacity)};
  webkit_web_view_set_background_color(view_.get(), &native);
}

void WebKitWebView::setAccessiblePatterns(const std::vector<std::string>& patterns) {
  std::vector<const char*> list(patterns.size() + 1);  // ends with null
  std::ranges::transform(patterns, list.begin(), &std::string::c_str);
  webkit_web_view_set_cors_allowlist(view_.get(), list.data());
}

bool WebKitWebView::holdsPoint(double x, double y) const {
  auto* widget = GTK_WIDGET(view_.get());
  auto* root = gtk_widget_get_root(widget);
  double ownX = 0;
  double ownY = 0;
  return isInWindow() &&
         gtk_widget_translate_coordinates(GTK_WIDGET(root), widget, x, y, &ownX, &ownY) &&
         gtk_widget_contains(widget, ownX, ownY);
}

bool WebKitWebView::isInWindow() const {
  return gtk_widget_get_root(GTK_WIDGET(view_.get())) &&
         gtk_widget_get_mapped(GTK_WIDGET(view_.get()));
}

void WebKitWebView::edit(EditingCommand command) {
  const auto name = [command] {
    switch (command) {
      case EditingCommand::Undo:
        return WEBKIT_EDITING_COMMAND_UNDO;
      case EditingCommand::Redo:
        return WEBKIT_EDITING_COMMAND_REDO;
      case EditingCommand::Cut:
        return WEBKIT_EDITING_COMMAND_CUT;
      case EditingCommand::Copy:
        return WEBKIT_EDITING_COMMAND_COPY;
      case EditingCommand::Paste:
        return WEBKIT_EDITING_COMMAND_PASTE;
      case EditingCommand::PasteAsPlainText:
        return WEBKIT_EDITING_COMMAND_PASTE_AS_PLAIN_TEXT;
      case EditingCommand::Delete:
        return "Delete";
      case EditingCommand::SelectAll:
        return WEBKIT_EDITING_COMMAND_SELECT_ALL;
    }
    return "";
  };
  webkit_web_view_execute_editing_command(view_.get(), name());
}

void WebKitWebView::focus() { gtk_widget_grab_focus(GTK_WIDGET(view_.get())); }

// Pasting is possible in a field alone.
bool WebKitWebView::isEditing() const {
  return webkit_editor_state_is_paste_available(webkit_web_view_get_editor_state(view_.get())) !=
         FALSE;
}

// A container that holds its child by name would keep a widget that was merely unparented.
void WebKitWebView::removeFromParent() {
  auto* widget = GTK_WIDGET(view_.get());
  auto* parent = gtk_widget_get_parent(widget);
  if (!parent) return;
  // The toolkit lets go of the keyboard only with the next frame: keys until then would be lost.
  if (auto* root = gtk_widget_get_root(widget); root && gtk_root_get_focus(root) == widget)
    gtk_root_set_focus(root, nullptr);
  if (GTK_IS_WINDOW(parent))
    gtk_window_set_child(GTK_WINDOW(parent), nullptr);
  else if (ADW_IS_BIN(parent))
    adw_bin_set_child(ADW_BIN(parent), nullptr);
  else if (GTK_IS_BOX(parent))
    gtk_box_remove(GTK_BOX(parent), widget);
  else
    gtk_widget_unparent(widget);
}

}  // namespace orvel
