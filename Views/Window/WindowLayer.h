#pragma once

#include <gtkmm/widget.h>

#include <functional>

#include "BrowserCore/Look/Theme.h"

namespace orvel {

// A rectangle of the window, from its leading upper corner.
struct LayerArea {
  double x, y, width, height;
};

// What the layers of a window are placed by.
struct WindowRoom {
  double width;
  double height;
  LayerArea page;          // the sheet that shows pages
  double sidebarWidth;     // also while it is hidden
  double dockedWidth;      // how much of it stands beside the page
  bool isSidebarFloating;  // it stands over the page
};

// One of the widgets that lie over one another in the main window. A new one takes a line in
// BrowserView's constructor, at its place from the bottom to the top.
struct WindowLayer {
  Gtk::Widget& widget;
  std::function<LayerArea(const WindowRoom&)> place;
  // Empty: it has no colors of its own.
  std::function<void(const Theme&, ColorScheme)> setTheme;
  // Whether it loses the keyboard while a sheet or the command bar stands over it.
  enum class Keyboard { Kept, LostBelowOthers };
  Keyboard keyboard = Keyboard::Kept;
  // Whether it is there at all; empty: the widget sees to that.
  std::function<bool(const WindowRoom&)> isShown;
};

}  // namespace orvel
