#pragma once

#include <gtkmm/box.h>

#include "Models/Sidebar/SidebarRows.h"

namespace orvel {

// What shows one row of the list. It is pooled: between `unbind` and the next `bind` it is out of
// sight and holds on to nothing of the model.
class RowWidget : public Gtk::Box {
 public:
  explicit RowWidget(int spacing) : Gtk::Box(Gtk::Orientation::HORIZONTAL, spacing) {}

  virtual void bind(const SidebarRow& row) = 0;
  virtual void unbind() = 0;
  // The keyboard comes to the row; returns whether something of it took the focus.
  virtual bool takeFocus() { return grab_focus(); }
  // The pointer has come over the row, or has left it.
  virtual void setPointed(bool /*isPointed*/) {}
};

}  // namespace orvel
