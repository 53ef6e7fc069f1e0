#pragma once

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>

#include "DesignSystem/Icons.h"
#include "DesignSystem/SpringAnimation.h"
#include "DesignSystem/StyleSheet.h"
#include "Models/Windows/Toasts.h"

namespace orvel {

// The short message over the page, with its one action.
class ToastView final : public Gtk::Box {
 public:
  // `toasts` outlives the view.
  explicit ToastView(Toasts& toasts);

  ThemeRoot& theme() { return theme_; }
  // How far it still lies below its place, in pixels.
  double drop() const { return (1 - presence_.value()) * 12; }

 private:
  void show(const Toast& toast);

  ThemeRoot theme_;
  Gtk::Image* symbol_;
  Gtk::Label message_;
  Gtk::Box divider_;
  Gtk::Button action_;
  SpringAnimation presence_;
  Effect follow_;
};

}  // namespace orvel
