#include "Views/Settings/ChoiceRow.h"

#include <gtkmm/eventcontrollerkey.h>

#include <algorithm>

#include "DesignSystem/Icons.h"

namespace orvel {

ChoiceRow::ChoiceRow(Kind kind, const std::string& name) : kind_(kind) {
  setAccessibleRole(
      *this, kind == Kind::Tabs ? GTK_ACCESSIBLE_ROLE_TAB_LIST : GTK_ACCESSIBLE_ROLE_RADIO_GROUP);
  setAccessibleLabel(*this, name);
  auto keys = Gtk::EventControllerKey::create();
  keys->signal_key_pressed().connect(
      [this](guint key, guint, Gdk::ModifierType) { return keyPressed(key); }, false);
  add_controller(keys);
}

void ChoiceRow::add(Gtk::ToggleButton& button, bool isChosen, std::function<void()> chosen) {
  setAccessibleRole(button,
                    kind_ == Kind::Tabs ? GTK_ACCESSIBLE_ROLE_TAB : GTK_ACCESSIBLE_ROLE_RADIO);
  if (!choices_.empty()) button.set_group(choices_.front().button);
  const auto& choice = choices_.emplace_back(Choice{button, std::move(chosen)});
  button.set_active(isChosen);
  showStop(choice);
  button.signal_toggled().connect(
      [this, index = choices_.size() - 1] { showStop(choices_[index]); });
  button.signal_clicked().connect(
      [this, index = choices_.size() - 1] { choices_[index].chosen(); });
  append(button);
}

void ChoiceRow::setChosen(size_t index) { choices_[index].button.set_active(true); }

void ChoiceRow::showStop(const Choice& choice) {
  const bool isChosen = choice.button.get_active();
  choice.button.set_focusable(isChosen);
  auto* spoken = GTK_ACCESSIBLE(choice.button.Gtk::Widget::gobj());
  if (kind_ == Kind::Tabs)
    gtk_accessible_update_state(spoken, GTK_ACCESSIBLE_STATE_SELECTED, isChosen, -1);
  else
    gtk_accessible_update_state(
        spoken, GTK_ACCESSIBLE_STATE_CHECKED,
        isChosen ? GTK_ACCESSIBLE_TRISTATE_TRUE : GTK_ACCESSIBLE_TRISTATE_FALSE, -1);
}

bool ChoiceRow::keyPressed(guint key) {
  const auto present = std::ranges::find_if(
      choices_, [](const Choice& choice) { return choice.button.get_active(); });
  if (present == choices_.end()) return false;
  const auto count = static_cast<int>(choices_.size());
  const auto index = static_cast<int>(present - choices_.begin());
  const int forward = get_direction() == Gtk::TextDirection::RTL ? -1 : 1;
  int next = 0;
  switch (key) {
    case GDK_KEY_Right:
      next = index + forward;
      break;
    case GDK_KEY_Left:
      next = index - forward;
      break;
    case GDK_KEY_Down:
      next = index + 1;
      break;
    case GDK_KEY_Up:
      next = index - 1;
      break;
    case GDK_KEY_Home:
      next = 0;
      break;
    case GDK_KEY_End:
      next = count - 1;
      break;
    default:
      return false;
  }
  const auto& choice = choices_[static_cast<size_t>((next + count) % count)];
  choice.button.set_active(true);
  choice.button.grab_focus();
  choice.chosen();
  return true;
}

}  // namespace orvel
