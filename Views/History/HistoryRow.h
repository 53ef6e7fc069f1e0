#pragma once

#include <glibmm/object.h>
#include <gtkmm/box.h>
#include <gtkmm/label.h>

#include "DesignSystem/SiteIcon.h"
#include "Models/History/HistoryList.h"
#include "Models/Store/Services.h"

namespace orvel {

// A visit as the history window lists it.
struct HistoryItem final : Glib::Object {
  HistoryItem(HistoryStore::Entry entry, std::string heading)
      : entry(std::move(entry)), heading(std::move(heading)) {}

  const HistoryStore::Entry entry;
  const std::string heading;  // the day's title above its first visit; otherwise empty
};

// One visit: the page's icon, its title, its site and the time, below the day's heading where the
// day begins.
class HistoryRow final : public Gtk::Box {
 public:
  // The services outlive the row.
  explicit HistoryRow(const Services& services);

  void show(const Glib::RefPtr<HistoryItem>& item);
  // Null before the first one.
  const HistoryItem* item() const { return item_.get(); }
  // The part that stands for the visit, without the heading.
  Gtk::Widget& entry() { return entry_; }

 private:
  void showIcon(const std::string& site);
  static Task<> readIcon(HistoryRow* row, FaviconStore& icons, std::string host, std::string site);

  const Services& services_;
  Glib::RefPtr<HistoryItem> item_;
  Gtk::Box heading_;
  Gtk::Label day_;
  Gtk::Box entry_;
  SiteIcon icon_;
  Gtk::Label title_;
  Gtk::Label site_;
  Gtk::Label time_;
  // Ends with the row and when it shows another visit.
  TaskHandle reading_;
};

}  // namespace orvel
