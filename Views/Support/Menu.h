#pragma once

#include <gtkmm/widget.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvel {

// One entry of a menu, as a value.
struct MenuEntry {
  std::string title;
  std::function<void()> perform;  // empty: the entry is not available now
  std::string accelerator;        // GTK's notation, shown at the entry's end
  std::optional<bool> isOn;       // whether it is marked; absent: it never is
  std::string symbol;             // an icon, in lists of things
  std::vector<MenuEntry> submenu;
  bool beginsSection = false;
};

// Opens a menu at a point of the widget, which keeps it until it closes. The keyboard goes back
// then to where it was, and `closed` runs.
void presentMenu(Gtk::Widget& widget, double x, double y, std::vector<MenuEntry> entries,
                 std::function<void()> closed = {});

// The same above the widget, the ends of both in line: for a button at the foot of the window.
void presentMenuAbove(Gtk::Widget& widget, std::vector<MenuEntry> entries);

// Closes the widget's menu; returns whether one was open.
bool dismissMenu(Gtk::Widget& widget);

// Opens the menu of `entries`, made anew each time, on a secondary click and by the menu keys. It
// stays closed while there are none.
void installContextMenu(Gtk::Widget& widget, std::function<std::vector<MenuEntry>()> entries);

}  // namespace orvel
