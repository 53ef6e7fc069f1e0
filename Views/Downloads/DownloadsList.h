#pragma once

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/listbox.h>

#include <memory>
#include <vector>

#include "Models/Downloads/Downloads.h"
#include "Views/Downloads/DownloadRow.h"

namespace orvel {

// The latest downloads, and what can be done about each.
class DownloadsList final : public Gtk::Box {
 public:
  // The topic outlives the list.
  explicit DownloadsList(Downloads& downloads);

  void setPalette(const Palette& palette);

 private:
  void show(const std::vector<DownloadManager::Item>& items);
  bool showsSameItems(const std::vector<DownloadManager::Item>& items) const;

  Downloads& downloads_;
  Palette palette_{};
  Gtk::Button clear_;
  Gtk::Label nothing_;
  Gtk::ListBox list_;
  std::vector<std::unique_ptr<DownloadRow>> rows_;
  Effect follow_;
};

}  // namespace orvel
