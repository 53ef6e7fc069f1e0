#pragma once

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/switch.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Base/Observable.h"

namespace orvel {

// A page of the settings window: from the top groups of rows, notes and headings.
class SettingsPage : public Gtk::ScrolledWindow {
 public:
  SettingsPage();

 protected:
  // A card for rows.
  Gtk::Box& addGroup();
  void addHeading(const std::string& text);
  // What the group above it means.
  Gtk::Label& addNote(const std::string& text = {});
  void add(Gtk::Widget& widget) { column_.append(widget); }

 private:
  Gtk::Box column_;
};

// A row with the control at its end; empty subtitle: none. Answers the title's label.
Gtk::Label& addSetting(Gtk::Box& group, const std::string& title, Gtk::Widget& control,
                       const std::string& subtitle = {});
// Adds a second line to a row, below its title, in small and quiet type.
Gtk::Label& addSubtitle(Gtk::Label& title, const std::string& text = {});
// A row of quiet text alone.
void addRemark(Gtk::Box& group, const std::string& text);
void removeRows(Gtk::Box& group);

// A switch for something that is on or off.
class SettingSwitch final : public Gtk::Switch {
 public:
  // Of what is not there yet: off, and not to be turned.
  explicit SettingSwitch(const std::string& name);
  // `isOn` may read Observables, and is followed; `set` runs when the user turns the switch.
  SettingSwitch(const std::string& name, std::function<bool()> isOn, std::function<void(bool)> set);

 private:
  Effect follow_;
};

// The rows of a list of values with ids, which are edited in place: a row lives as long as its
// value does, so that typing in it goes on while the value is written.
template <class Row>
class EditedRows {
 public:
  explicit EditedRows(Gtk::Box& group) : group_(group) {}

  // `make` answers a new row for an id, `show` brings a row up to its value.
  template <class Value, class Make, class Show>
  void follow(const std::vector<Value>& values, Make make, Show show) {
    const auto isShown = [](const std::unique_ptr<Row>& row, const Value& value) {
      return row->id == value.id;
    };
    if (!std::ranges::equal(rows_, values, isShown)) {
      for (auto& row : rows_) group_.remove(*row);
      rows_.clear();
      for (const auto& value : values)
        group_.append(*rows_.emplace_back(std::unique_ptr<Row>(make(value.id))));
    }
    for (size_t i = 0; i < values.size(); ++i) show(*rows_[i], values[i]);
  }
  const std::vector<std::unique_ptr<Row>>& rows() const { return rows_; }

 private:
  Gtk::Box& group_;
  std::vector<std::unique_ptr<Row>> rows_;
};

}  // namespace orvel
