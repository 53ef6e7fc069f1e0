#pragma once

#include <gtkmm/button.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>

#include <string>
#include <string_view>

#include "DesignSystem/TextScale.h"

namespace orvel {

// The name of the symbolic icon for one of the system's symbols, "arrow.left" for example: our own
// drawing, or the toolkit's nearest where ours is not installed.
[[nodiscard]] std::string iconName(std::string_view symbol);

// An icon of `size` pixels, which grows with the size of the desktop's text.
[[nodiscard]] Gtk::Image* makeIcon(std::string_view symbol, int size = 16,
                                   IconPlace place = IconPlace::BesideText);
void setIcon(Gtk::Image& image, std::string_view symbol);

// A button that is only an icon, `size` pixels large. Its tooltip is `help`, which names it for
// assistive technology too; the key in it, as in "Reload (Ctrl+R)", is not part of the name.
class IconButton : public Gtk::Button {
 public:
  IconButton(std::string_view symbol, const std::string& help, int size = 16);
  void setSymbol(std::string_view symbol);
  void setHelp(const std::string& help);

 private:
  Gtk::Image* image_;
};

// Gives a widget a tooltip that changes often, a row's say: the toolkit's own way asks the display
// server where the pointer is, each time. `set_has_tooltip(false)` takes it away again. It shows
// only while `label`, which the widget holds for good, has no room for all it says; null: always.
void setTooltip(Gtk::Widget& widget, const std::string& text, const Gtk::Label* label = nullptr);

// Names a widget for assistive technology.
void setAccessibleLabel(Gtk::Widget& widget, const std::string& label);
// What more there is to say of it, its state for example.
void setAccessibleDescription(Gtk::Widget& widget, const std::string& description);
// Takes a widget and all below it out of what assistive technology sees, or back.
void setAccessibleHidden(Gtk::Widget& widget, bool isHidden);
// Call before the widget is first asked for its accessible state.
void setAccessibleRole(Gtk::Widget& widget, int role);

}  // namespace orvel
