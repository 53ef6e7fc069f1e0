#include "Desktop/Gtk/GtkDesktopWindow.h"

namespace orvel {

namespace {

// What the toolkit's fields call it.
const char* actionName(EditingCommand command) {
  switch (command) {
    case EditingCommand::Undo:
      return "text.undo";
    case EditingCommand::Redo:
      return "text.redo";
    case EditingCommand::Cut:
      return "clipboard.cut";
    case EditingCommand::Copy:
      return "clipboard.copy";
    case EditingCommand::Paste:
    case EditingCommand::PasteAsPlainText:
      return "clipboard.paste";
    case EditingCommand::Delete:
      return "selection.delete";
    case EditingCommand::SelectAll:
      return "selection.select-all";
  }
  return nullptr;
}

}  // namespace

void GtkDesktopWindow::makeKeyAndOrderFront() { gtk_window_present(window_); }

void GtkDesktopWindow::orderOut() { gtk_widget_set_visible(GTK_WIDGET(window_), FALSE); }

void GtkDesktopWindow::performClose() { gtk_window_close(window_); }

void GtkDesktopWindow::minimize() { gtk_window_minimize(window_); }

void GtkDesktopWindow::toggleMaximized() {
  gtk_window_is_maximized(window_) ? gtk_window_unmaximize(window_) : gtk_window_maximize(window_);
}

void GtkDesktopWindow::toggleFullscreen() {
  isFullscreen() ? gtk_window_unfullscreen(window_) : gtk_window_fullscreen(window_);
}

bool GtkDesktopWindow::isKey() const { return gtk_window_is_active(window_); }

bool GtkDesktopWindow::isVisible() const { return gtk_widget_get_visible(GTK_WIDGET(window_)); }

bool GtkDesktopWindow::isMinimized() const {
  auto* surface = gtk_native_get_surface(GTK_NATIVE(window_));
  return surface && GDK_IS_TOPLEVEL(surface) &&
         (gdk_toplevel_get_state(GDK_TOPLEVEL(surface)) & GDK_TOPLEVEL_STATE_MINIMIZED) != 0;
}

bool GtkDesktopWindow::isFullscreen() const { return gtk_window_is_fullscreen(window_); }

bool GtkDesktopWindow::isTextEditorFocused() const {
  auto* focus = gtk_window_get_focus(window_);
  return focus && (GTK_IS_EDITABLE(focus) || GTK_IS_TEXT_VIEW(focus));
}

void GtkDesktopWindow::edit(EditingCommand command) {
  if (isTextEditorFocused())
    gtk_widget_activate_action(gtk_window_get_focus(window_), actionName(command), nullptr);
}

void GtkDesktopWindow::setAppearance(WindowAppearance appearance) {
  appearance_ = appearance;
  adw_style_manager_set_color_scheme(
      adw_style_manager_get_default(),
      appearance == WindowAppearance::Light  ? ADW_COLOR_SCHEME_FORCE_LIGHT
      : appearance == WindowAppearance::Dark ? ADW_COLOR_SCHEME_FORCE_DARK
                                             : ADW_COLOR_SCHEME_DEFAULT);
}

void GtkDesktopWindow::setButtonHidden(WindowButton which, bool isHidden) {
  if (auto* widget = button(which)) gtk_widget_set_visible(widget, !isHidden);
}

void GtkDesktopWindow::setButtonAlpha(WindowButton which, double alpha, double duration) {
  auto* widget = button(which);
  if (!widget) return;
  auto& fade = fades_[static_cast<size_t>(which)];
  if (fade) adw_animation_pause(fade.get());
  fade = {};
  if (duration <= 0 || !gtk_widget_get_mapped(widget)) return gtk_widget_set_opacity(widget, alpha);
  auto* target = adw_callback_animation_target_new(
      [](double value, gpointer data) { gtk_widget_set_opacity(GTK_WIDGET(data), value); }, widget,
      nullptr);
  fade = GRef<AdwAnimation>::adopt(adw_timed_animation_new(
      widget, gtk_widget_get_opacity(widget), alpha, static_cast<guint>(duration * 1000), target));
  adw_animation_play(fade.get());
}

}  // namespace orvel
