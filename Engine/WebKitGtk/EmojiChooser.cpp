#include "Engine/WebKitGtk/EmojiChooser.h"

#include "Base/GRef.h"

namespace orvel {

namespace {

void chooserShown(GtkPopover* chooser, ::WebKitWebView* view) {
  if (!webkit_editor_state_is_paste_available(webkit_web_view_get_editor_state(view)))
    gtk_popover_popdown(chooser);
}

// The engine makes its chooser when it first wants one, and keeps it.
void childrenChanged(GListModel* children, guint position, guint, guint added,
                     ::WebKitWebView* view) {
  for (guint i = position; i < position + added; ++i) {
    const auto child = GRef<GObject>::adopt(G_OBJECT(g_list_model_get_item(children, i)));
    if (GTK_IS_EMOJI_CHOOSER(child.get()))
      g_signal_connect(child.get(), "show", G_CALLBACK(chooserShown), view);
  }
}

}  // namespace

void keepEmojiToFields(::WebKitWebView* view) {
  auto* children = gtk_widget_observe_children(GTK_WIDGET(view));
  g_signal_connect(children, "items-changed", G_CALLBACK(childrenChanged), view);
  g_object_set_data_full(G_OBJECT(view), "orvel-children", children, g_object_unref);
}

}  // namespace orvel
