#include "Views/Sidebar/ItemRow.h"

#include <gtkmm/eventcontrollerkey.h>

#include "DesignSystem/Icons.h"
#include "DesignSystem/StyleSheet.h"

namespace orvel {

namespace {

constexpr int kSpacing = 9;
constexpr int kIndent = 22;
constexpr size_t kMaxIndent = 3;

}  // namespace

ItemRow::ItemRow() : RowWidget(kSpacing) {
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_LIST_ITEM);
  add_css_class("row");
  set_focusable(true);

  auto click = Gtk::GestureClick::create();
  click->set_button(0);
  auto* gesture = click.get();
  click->signal_pressed().connect([this, gesture](int, double x, double y) {
    switch (gesture->get_current_button()) {
      case GDK_BUTTON_PRIMARY:
        add_css_class("pressed");
        break;
      case GDK_BUTTON_SECONDARY:
        showMenu(x, y);
        break;
      default:
        break;
    }
  });
  click->signal_released().connect([this, gesture](int, double x, double y) {
    remove_css_class("pressed");
    if (!contains(x, y)) return;
    if (gesture->get_current_button() == GDK_BUTTON_PRIMARY) activate();
    if (gesture->get_current_button() == GDK_BUTTON_MIDDLE) middleClicked();
  });
  click->signal_cancel().connect([this](Gdk::EventSequence*) { remove_css_class("pressed"); });
  add_controller(click);

  auto keys = Gtk::EventControllerKey::create();
  keys->signal_key_pressed().connect(
      [this](guint key, guint, Gdk::ModifierType state) { return handleKey(key, state); }, false);
  add_controller(keys);
}

void ItemRow::setDepth(size_t depth) {
  set_margin_start(kIndent * static_cast<int>(std::min(depth, kMaxIndent)));
}

void ItemRow::clearHover() {
  isMenuOpen_ = isPointed_ = false;
  showHover();
  remove_css_class("pressed");
}

void ItemRow::setPointed(bool isPointed) {
  isPointed_ = isPointed;
  showHover();
}

void ItemRow::showHover() {
  const bool isShown = isPointed_ || isMenuOpen_;
  if (has_css_class("hover") == isShown) return;
  setClass(Gtk::Widget::gobj(), "hover", isShown);
  hoverChanged(isShown);
}

void ItemRow::showMenu(double x, double y) {
  auto entries = menu();
  if (entries.empty()) return;
  isMenuOpen_ = true;
  showHover();
  presentMenu(*this, x, y, std::move(entries), [this] {
    isMenuOpen_ = false;
    showHover();
  });
}

bool ItemRow::handleKey(guint key, Gdk::ModifierType state) {
  if (!has_focus()) return false;
  const auto held = state & (Gdk::ModifierType::CONTROL_MASK | Gdk::ModifierType::ALT_MASK);
  if (held != Gdk::ModifierType{}) return false;
  const bool isShifted = (state & Gdk::ModifierType::SHIFT_MASK) != Gdk::ModifierType{};
  switch (key) {
    case GDK_KEY_Return:
    case GDK_KEY_KP_Enter:
    case GDK_KEY_space:
      activate();
      return true;
    case GDK_KEY_Menu:
      showMenu(0, get_height());
      return true;
    case GDK_KEY_F10:
      if (!isShifted) return false;
      showMenu(0, get_height());
      return true;
    default:
      return keyPressed(key);
  }
}

}  // namespace orvel
