#pragma once

#include <gtkmm/stack.h>
#include <gtkmm/togglebutton.h>

#include "DesignSystem/StyleSheet.h"
#include "Views/SettingsGeneral.h"
#include "Views/SettingsLinks.h"
#include "Views/SettingsPrivacy.h"

namespace orvel {

// The window of the user's choices, a page for each kind. Closing hides it.
class SettingsWindow {
 public:
  enum class Page { General, Privacy, Links, Extensions };

  // `parent` is the window it belongs to. It and the others outlive the window.
  SettingsWindow(GtkWindow* parent, BrowserStore& store, const Observable<ColorScheme>& scheme);
  ~SettingsWindow();
  SettingsWindow(const SettingsWindow&) = delete;

  void present();
  void show(Page page);
  GtkWindow* native() const { return window_; }

 private:
  Gtk::Widget& makeHeader();
  void addPage(Page page, const char* title, Gtk::Widget& content);
  void addKeys();

  BrowserStore& store_;
  GtkWindow* window_;
  Gtk::Box root_;
  ThemeRoot theme_;
  Gtk::Box tabs_;
  Gtk::Stack pages_;
  SettingsGeneral general_;
  SettingsPrivacy privacy_;
  SettingsLinks links_;
  std::vector<Gtk::ToggleButton*> buttons_;
  Effect themeEffect_;
};

}  // namespace orvel
