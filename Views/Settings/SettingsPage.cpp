#include "Views/Settings/SettingsPage.h"

#include <gdkmm/frameclock.h>

#include "DesignSystem/Icons.h"

namespace orvel {

SettingsPage::SettingsPage() : column_(Gtk::Orientation::VERTICAL) {
  add_css_class("settings-page");
  set_focusable(false);
  set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  column_.add_css_class("settings");
  set_child(column_);
}

Gtk::Box& SettingsPage::addGroup() {
  auto* group = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
  group->add_css_class("card");
  column_.append(*group);
  return *group;
}

void SettingsPage::addHeading(const std::string& text) {
  auto* heading = Gtk::make_managed<Gtk::Label>(text);
  heading->set_xalign(0);
  heading->add_css_class("serif");
  heading->add_css_class("settings-heading");
  column_.append(*heading);
}

Gtk::Label& SettingsPage::addNote(const std::string& text) {
  auto* note = Gtk::make_managed<Gtk::Label>(text);
  note->set_xalign(0);
  note->set_wrap(true);
  note->add_css_class("note");
  note->add_css_class("quiet");
  column_.append(*note);
  return *note;
}

Gtk::Label& addSetting(Gtk::Box& group, const std::string& title, Gtk::Widget& control,
                       const std::string& subtitle) {
  auto* row = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 10);
  row->add_css_class("setting");
  auto* texts = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
  texts->set_hexpand(true);
  texts->set_valign(Gtk::Align::CENTER);
  auto* label = Gtk::make_managed<Gtk::Label>(title);
  label->set_xalign(0);
  label->set_ellipsize(Pango::EllipsizeMode::END);
  texts->append(*label);
  if (!subtitle.empty()) addSubtitle(*label, subtitle);
  row->append(*texts);
  control.set_valign(Gtk::Align::CENTER);
  row->append(control);
  group.append(*row);
  return *label;
}

Gtk::Label& addSubtitle(Gtk::Label& title, const std::string& text) {
  auto* second = Gtk::make_managed<Gtk::Label>(text);
  second->set_xalign(0);
  second->set_wrap(true);
  second->add_css_class("small");
  second->add_css_class("quiet");
  static_cast<Gtk::Box*>(title.get_parent())->append(*second);
  return *second;
}

Gtk::Label& addRemark(Gtk::Box& group, const std::string& text) {
  auto* label = Gtk::make_managed<Gtk::Label>(text);
  label->set_xalign(0);
  label->set_wrap(true);
  label->add_css_class("setting");
  label->add_css_class("quiet");
  group.append(*label);
  return *label;
}

void focusWhenPlaced(Gtk::Widget& widget) {
  if (widget.get_height() > 0) {
    widget.child_focus(Gtk::DirectionType::TAB_FORWARD);
    return;
  }
  widget.add_tick_callback([&widget](const Glib::RefPtr<Gdk::FrameClock>&) {
    if (widget.get_height() == 0) return true;
    widget.child_focus(Gtk::DirectionType::TAB_FORWARD);
    return false;
  });
}

SettingSwitch::SettingSwitch(const std::string& name) {
  setAccessibleLabel(*this, name);
  set_sensitive(false);
}

SettingSwitch::SettingSwitch(const std::string& name, std::function<bool()> isOn,
                             std::function<void(bool)> set) {
  setAccessibleLabel(*this, name);
  follow_ = effect([this, isOn] { set_active(isOn()); });
  property_active().signal_changed().connect([this, isOn, set = std::move(set)] {
    const bool isActive = get_active();
    if (isActive != untracked(isOn)) set(isActive);
  });
}

}  // namespace orvel
