#pragma once

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/switch.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Base/Observable.h"
#include "Views/Window/Keyboard.h"

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

// A row with the control at its end; empty subtitle: none. Returns the title's label.
Gtk::Label& addSetting(Gtk::Box& group, const std::string& title, Gtk::Widget& control,
                       const std::string& subtitle = {});
// Adds a second line to a row, below its title, in small and quiet type.
Gtk::Label& addSubtitle(Gtk::Label& title, const std::string& text = {});
// A row of quiet text alone.
Gtk::Label& addRemark(Gtk::Box& group, const std::string& text);

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

// Gives the keyboard to the first of what is in a widget, as soon as the widget has the place that
// the page scrolls to then.
void focusWhenPlaced(Gtk::Widget& widget);

// The rows of a list of values with ids, in a group: a row lives as long as its value does, so that
// typing in it goes on while the value is written. The keyboard of a row that goes comes to its
// neighbor.
template <class Row>
class EditedRows {
 public:
  // Above the rows the group may have others.
  explicit EditedRows(Gtk::Box& group) : group_(group) {}

  // `make` answers a new row for an id, `show` brings a row up to its value.
  template <class Value, class Make, class Show>
  void follow(const std::vector<Value>& values, Make make, Show show) {
    const auto focused = focusedIndex();
    Rows former = std::exchange(rows_, {});
    auto* before = lastAbove(former);
    Row* made = nullptr;
    for (const auto& value : values) {
      const auto known =
          std::ranges::find_if(former, [&](const auto& row) { return row && row->id == value.id; });
      const bool isKnown = known != former.end();
      auto& row =
          *rows_.emplace_back(isKnown ? std::move(*known) : std::unique_ptr<Row>(make(value.id)));
      if (!isKnown)
        insert(*(made = &row), before);
      else if (row.get_prev_sibling() != before)
        move(row, before);
      show(row, value);
      before = &row;
    }
    for (auto& row : former)
      if (row) group_.remove(*row);
    if (std::exchange(focusesNew_, false) && made)
      focusWhenPlaced(*made);
    else if (focused && !focusedIndex() && !rows_.empty())
      focusWhenPlaced(*rows_[std::min(*focused, rows_.size() - 1)]);
  }
  // The row of the value that comes next gets the keyboard, in view.
  void focusNew() { focusesNew_ = true; }
  const std::vector<std::unique_ptr<Row>>& rows() const { return rows_; }

 private:
  using Rows = std::vector<std::unique_ptr<Row>>;

  std::optional<size_t> focusedIndex() const {
    auto* focus = focusBeside(GTK_WIDGET(group_.gobj()));
    for (size_t i = 0; focus && i < rows_.size(); ++i)
      if (gtk_widget_is_ancestor(focus, GTK_WIDGET(rows_[i]->gobj()))) return i;
    return std::nullopt;
  }
  Gtk::Widget* lastAbove(const Rows& rows) const {
    return rows.empty() ? group_.get_last_child() : rows.front()->get_prev_sibling();
  }
  void insert(Row& row, Gtk::Widget* before) {
    before ? group_.insert_child_after(row, *before) : group_.prepend(row);
  }
  void move(Row& row, Gtk::Widget* before) {
    before ? group_.reorder_child_after(row, *before) : group_.reorder_child_at_start(row);
  }
  Gtk::Box& group_;
  Rows rows_;
  bool focusesNew_ = false;
};

}  // namespace orvel
