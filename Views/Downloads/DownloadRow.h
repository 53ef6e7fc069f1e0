#pragma once

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/listboxrow.h>
#include <gtkmm/progressbar.h>

#include <functional>

#include "DesignSystem/Icons.h"
#include "Support/Downloads/DownloadManager.h"
#include "Views/Downloads/FileSign.h"

namespace orvel {

// One download: its file, how far it is or how it ended, and what can be done about it.
class DownloadRow final : public Gtk::ListBoxRow {
 public:
  struct Actions {
    std::function<void(const DownloadManager::Item&)> reveal;
    std::function<void(const DownloadManager::Item&)> cancel;
  };

  DownloadRow(const DownloadManager::Item& item, const Palette& palette, Actions actions);

  const DownloadManager::Item& item() const { return item_; }
  void show(const DownloadManager::Item& item);
  void setPalette(const Palette& palette) { sign_.setPalette(palette); }

 private:
  void build();

  DownloadManager::Item item_;
  const Actions actions_;
  Gtk::Box line_;
  FileSign sign_;
  Gtk::Box words_;
  Gtk::Label name_;
  Gtk::Label state_;
  Gtk::ProgressBar bar_;
  IconButton reveal_;
  IconButton cancel_;
};

}  // namespace orvel
