#include "Views/MainWindow.h"

#include "Views/BrowserView.h"
#include "Views/SettingsWindow.h"
#include "Views/WindowShortcuts.h"

namespace orvel {

namespace {

constexpr int kWidth = 1280;
constexpr int kHeight = 820;
constexpr int kMinimumWidth = 640;
constexpr int kMinimumHeight = 420;

}  // namespace

MainWindow::MainWindow(GtkApplication* application, BrowserStore& store)
    : store_(store),
      window_(GTK_WINDOW(g_object_ref_sink(adw_application_window_new(application)))),
      desktopWindow_(window_),
      view_(std::make_unique<BrowserView>(store)),
      scroll_(std::make_unique<GtkScrollSource>(GTK_WIDGET(window_), *store.scrollMonitor)) {
  gtk_window_set_title(window_, "Orvel");
  gtk_window_set_default_size(window_, kWidth, kHeight);
  gtk_widget_set_size_request(GTK_WIDGET(window_), kMinimumWidth, kMinimumHeight);
  gtk_window_set_hide_on_close(window_, TRUE);
  // F10 is the main menu's, not the menu bar's of the toolkit.
  gtk_window_set_handle_menubar_accel(window_, FALSE);
  gtk_widget_add_css_class(GTK_WIDGET(window_), "orvel");
  adw_application_window_set_content(ADW_APPLICATION_WINDOW(window_), view_->gobj());
  desktopWindow_.setButtons(view_->sidebar().topBar().windowButtons());
  auto* action = g_simple_action_new("settings", nullptr);
  g_signal_connect_swapped(action, "activate",
                           G_CALLBACK(+[](MainWindow* self) { self->settings().present(); }), this);
  g_action_map_add_action(G_ACTION_MAP(window_), G_ACTION(action));
  g_object_unref(action);
  installWindowShortcuts(GTK_WIDGET(window_), store, *view_);
  store_.window = &desktopWindow_;
  store_.updateWindowChrome(BrowserStore::ChromeMotion::AtOnce);
  store_.updateWindowAppearance();
}

MainWindow::~MainWindow() {
  scroll_.reset();
  settings_.reset();
  if (store_.window == &desktopWindow_) store_.window = nullptr;
  adw_application_window_set_content(ADW_APPLICATION_WINDOW(window_), nullptr);
  view_.reset();
  gtk_window_destroy(window_);
  g_object_unref(window_);
}

SettingsWindow& MainWindow::settings() {
  if (!settings_) settings_ = std::make_unique<SettingsWindow>(window_, store_, view_->scheme());
  return *settings_;
}

void MainWindow::present() { gtk_window_present(window_); }

}  // namespace orvel
