#include "Desktop/Gtk/GtkDesktopWindow.h"

#include <X11/Xatom.h>
#include <gdk/x11/gdkx.h>

#include <optional>

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

// Whether the desktop names this window as the active one; absent where nobody says so: under
// Wayland, and without a window manager.
std::optional<bool> isNamedActive(GtkWindow* window) {
  auto* surface = gtk_native_get_surface(GTK_NATIVE(window));
  if (!surface || !GDK_IS_X11_SURFACE(surface)) return std::nullopt;
  auto* display = gdk_surface_get_display(surface);
  auto* native = gdk_x11_display_get_xdisplay(display);
  Atom type = 0;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  const int status =
      XGetWindowProperty(native, gdk_x11_display_get_xrootwindow(display),
                         gdk_x11_get_xatom_by_name_for_display(display, "_NET_ACTIVE_WINDOW"), 0, 1,
                         False, XA_WINDOW, &type, &format, &count, &rest, &data);
  std::optional<bool> isActive;
  if (status == Success && format == 32 && count == 1)
    isActive = *reinterpret_cast<Window*>(data) == gdk_x11_surface_get_xid(surface);
  if (data) XFree(data);
  return isActive;
}

}  // namespace

void GtkDesktopWindow::present() { gtk_window_present(window_); }

void GtkDesktopWindow::hide() { gtk_widget_set_visible(GTK_WIDGET(window_), FALSE); }

void GtkDesktopWindow::close() { gtk_window_close(window_); }

void GtkDesktopWindow::minimize() { gtk_window_minimize(window_); }

void GtkDesktopWindow::toggleMaximized() {
  gtk_window_is_maximized(window_) ? gtk_window_unmaximize(window_) : gtk_window_maximize(window_);
}

void GtkDesktopWindow::toggleFullscreen() {
  isFullscreen() ? gtk_window_unfullscreen(window_) : gtk_window_fullscreen(window_);
}

// A key that another program holds for itself, such as that for the volume, takes the keyboard from
// the toolkit's window for a moment, but not from the desktop's.
bool GtkDesktopWindow::isActive() const {
  return gtk_window_is_active(window_) || (isVisible() && isNamedActive(window_).value_or(false));
}

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
