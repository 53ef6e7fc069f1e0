#include "Views/Support/Panel.h"

#include <gtkmm/window.h>

#include "DesignSystem/Icons.h"

namespace orvel {

namespace {

constexpr int kGap = 6;
// What stays free of the window's height.
constexpr int kMargin = 96;

}  // namespace

Panel::Panel(Gtk::Button& button, Gtk::Widget& content, Side side, const std::string& name)
    : button_(button) {
  popover_.add_css_class("panel");
  popover_.set_has_arrow(false);
  popover_.set_position(side == Side::Above ? Gtk::PositionType::TOP : Gtk::PositionType::BOTTOM);
  popover_.set_offset(0, side == Side::Above ? -kGap : kGap);
  if (side == Side::Below) popover_.set_halign(Gtk::Align::START);
  scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  scroller_.set_focusable(false);
  scroller_.set_propagate_natural_height(true);
  scroller_.set_child(content);
  popover_.set_child(scroller_);
  setAccessibleLabel(popover_, name);
  popover_.set_parent(button);
  popover_.signal_closed().connect([this] {
    if (button_.get_mapped()) button_.grab_focus();
    if (didClose) didClose();
  });
}

Panel::~Panel() { popover_.unparent(); }

void Panel::toggle() {
  if (isOpen()) return close();
  if (willOpen) willOpen();
  if (const auto* window = dynamic_cast<Gtk::Window*>(button_.get_root()))
    scroller_.set_max_content_height(std::max(kMargin, window->get_height() - kMargin));
  popover_.popup();
}

}  // namespace orvel
