// The least that shows a page: a window with one view. What start-up times are measured beside.

#include <adwaita.h>
#include <webkit/webkit.h>

int main(int count, char** arguments) {
  adw_init();
  auto* window = gtk_window_new();
  auto* view = webkit_web_view_new();
  gtk_window_set_default_size(GTK_WINDOW(window), 1280, 820);
  gtk_window_set_child(GTK_WINDOW(window), GTK_WIDGET(view));
  g_object_bind_property(view, "title", window, "title", G_BINDING_DEFAULT);
  webkit_web_view_load_uri(WEBKIT_WEB_VIEW(view), count > 1 ? arguments[1] : "about:blank");
  gtk_window_present(GTK_WINDOW(window));
  auto* loop = g_main_loop_new(nullptr, FALSE);
  g_signal_connect_swapped(window, "close-request", G_CALLBACK(g_main_loop_quit), loop);
  g_main_loop_run(loop);
}
