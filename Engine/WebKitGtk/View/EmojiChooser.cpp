#include "Engine/WebKitGtk/View/EmojiChooser.h"

#include "Base/GRef.h"

namespace orvel {

namespace {

void picked(GtkEmojiChooser*, const char* emoji, ::WebKitWebView* view) {
  webkit_web_view_execute_editing_command_with_argument(view, "InsertText", emoji);
}

// What was picked is told after this.
void closed(GtkWidget* chooser, ::WebKitWebView* view) {
  gtk_widget_grab_focus(GTK_WIDGET(view));
  g_idle_add_once(
      [](gpointer gone) {
        if (gtk_widget_get_parent(GTK_WIDGET(gone))) gtk_widget_unparent(GTK_WIDGET(gone));
        g_object_unref(gone);
      },
      g_object_ref(chooser));
}

// Over the page's top: where the cursor is the engine tells nobody.
void present(::WebKitWebView* view) {
  auto* parent = gtk_widget_get_parent(GTK_WIDGET(view));
  if (!parent) return;
  auto* chooser = gtk_emoji_chooser_new();
  gtk_widget_set_parent(chooser, parent);
  const GdkRectangle at = {gtk_widget_get_width(parent) / 2, 0, 1, 1};
  gtk_popover_set_pointing_to(GTK_POPOVER(chooser), &at);
  g_signal_connect_object(chooser, "emoji-picked", G_CALLBACK(picked), view,
                          static_cast<GConnectFlags>(0));
  g_signal_connect_object(chooser, "closed", G_CALLBACK(closed), view,
                          static_cast<GConnectFlags>(0));
  gtk_popover_popup(GTK_POPOVER(chooser));
}

// The engine's own chooser has come up, and takes the keyboard yet.
void shown(GtkWidget* chooser, ::WebKitWebView* view) {
  struct Shown {
    GRef<GtkWidget> chooser;
    GRef<::WebKitWebView> view;
  };
  g_idle_add_full(
      G_PRIORITY_HIGH,
      [](gpointer data) -> gboolean {
        const auto& [own, page] = *static_cast<Shown*>(data);
        gtk_popover_popdown(GTK_POPOVER(own.get()));
        gtk_widget_grab_focus(GTK_WIDGET(page.get()));
        auto* state = webkit_web_view_get_editor_state(page.get());
        if (webkit_editor_state_is_paste_available(state)) present(page.get());
        return G_SOURCE_REMOVE;
      },
      new Shown{GRef<GtkWidget>::retain(chooser), GRef<::WebKitWebView>::retain(view)},
      [](gpointer data) { delete static_cast<Shown*>(data); });
}

using Visit = void (*)(GtkWidget* child, ::WebKitWebView* view);

// Visits the children of a widget, and those that it gets later.
void forEachChild(GtkWidget* widget, ::WebKitWebView* view, Visit visit) {
  struct Watch {
    ::WebKitWebView* view;
    Visit visit;
  };
  auto* children = gtk_widget_observe_children(widget);
  const auto changed = +[](GListModel* list, guint position, guint, guint added, Watch* watch) {
    for (guint i = position; i < position + added; ++i) {
      const auto child = GRef<GtkWidget>::adopt(GTK_WIDGET(g_list_model_get_item(list, i)));
      watch->visit(child.get(), watch->view);
    }
  };
  auto* watch = new Watch{view, visit};
  changed(children, 0, 0, g_list_model_get_n_items(children), watch);
  g_signal_connect_data(
      children, "items-changed", G_CALLBACK(changed), watch,
      [](gpointer data, GClosure*) { delete static_cast<Watch*>(data); },
      static_cast<GConnectFlags>(0));
  g_object_set_data_full(G_OBJECT(widget), "orvel-children", children, g_object_unref);
}

}  // namespace

// The engine has a text view of the toolkit, unseen, tell it what keys mean, and this one opens it.
void installEmojiChooser(::WebKitWebView* view) {
  forEachChild(GTK_WIDGET(view), view, [](GtkWidget* child, ::WebKitWebView* page) {
    if (!GTK_IS_TEXT_VIEW(child)) return;
    forEachChild(child, page, [](GtkWidget* chooser, ::WebKitWebView* owner) {
      if (GTK_IS_EMOJI_CHOOSER(chooser))
        g_signal_connect(chooser, "show", G_CALLBACK(shown), owner);
    });
  });
}

}  // namespace orvel
