#pragma once

#include <giomm/liststore.h>
#include <gtkmm/button.h>
#include <gtkmm/listview.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/singleselection.h>
#include <gtkmm/stack.h>

#include <deque>

#include "Views/History/HistoryRow.h"
#include "Views/Support/KeyTextField.h"
#include "Views/Support/Menu.h"
#include "Views/Window/UtilityWindows.h"

namespace orvel {

// What was visited in the active space's profile: by day, searched as one types, opened and
// forgotten.
class HistoryContent final : public UtilityContent {
 public:
  // The store outlives it.
  explicit HistoryContent(BrowserStore& store);
  ~HistoryContent() override {
    if (filling_) g_source_remove(filling_);
  }

  Gtk::Widget& body() override { return box_; }
  void willShow() override;
  bool beginSearch() override;

  KeyTextField& field() { return field_; }
  Gtk::ListView& list() { return listView_; }
  const Glib::RefPtr<Gio::ListStore<HistoryItem>>& items() const { return items_; }

 private:
  KeyTextField::Actions fieldActions();
  void cancel();
  void buildHeader();
  void buildList();
  void buildNothing();
  void reloadIfShown();
  void showItems();
  // Puts the next of the coming items in the place of `gone` ones; the others wait for a quiet
  // moment.
  void fill(guint gone);
  void showPage();
  bool keyPressed(guint key);
  void focusList();
  // The row that has the keyboard; null when none has.
  HistoryRow* focusedRow();
  std::vector<MenuEntry> menu(const HistoryRow& row);

  BrowserStore& store_;
  HistoryList history_;
  Gtk::Box box_;
  Gtk::Box header_;
  KeyTextField field_;
  Gtk::Button clear_;
  Gtk::Stack pages_;
  Gtk::ScrolledWindow scroller_;
  Gtk::ListView listView_;
  Glib::RefPtr<Gio::ListStore<HistoryItem>> items_;
  std::deque<Glib::RefPtr<HistoryItem>> coming_;
  guint place_ = 0;    // of the first of them
  guint filling_ = 0;  // the source that goes on filling the list
  Gtk::Box nothing_;
  Gtk::Label nothingText_;
  Effect reload_;
  Effect itemsEffect_;
  Effect pageEffect_;
};

}  // namespace orvel
