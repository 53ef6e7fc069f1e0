#pragma once

#include <gtkmm/box.h>
#include <gtkmm/windowhandle.h>

#include <array>

#include "Base/Observable.h"
#include "DesignSystem/Icons.h"

namespace orvel {

class BrowserStore;

// The window's own buttons, the sidebar's toggle, back, forward and reload. It moves the window; a
// double click maximizes it.
class SidebarTopBar final : public Gtk::WindowHandle {
 public:
  // The store outlives the bar.
  explicit SidebarTopBar(BrowserStore& store);

  // Close, minimize, maximize.
  std::array<GtkWidget*, 3> windowButtons();

 private:
  void showNavigation();

  BrowserStore& store_;
  std::array<Gtk::Button, 3> windowButtons_;
  IconButton toggle_;
  IconButton back_;
  IconButton forward_;
  IconButton reload_;
  bool isLoading_ = false;
  Effect navigation_;
};

}  // namespace orvel
