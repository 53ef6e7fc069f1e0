#pragma once

#include <gtkmm/box.h>
#include <gtkmm/scrolledwindow.h>

#include <memory>
#include <vector>

#include "Base/Scheduler.h"
#include "DesignSystem/Icons.h"
#include "DesignSystem/Towel.h"
#include "Models/Spaces/Space.h"
#include "Views/Downloads/DownloadsButton.h"
#include "Views/Sidebar/TabDragSource.h"

namespace orvel {

class BrowserStore;

// One seal for each space, in order, and the button that makes a new one. A click on a seal goes to
// its space; its menu edits and deletes it, and a tab that is dropped on it moves there. The active
// space's seal is kept in view. On Towel Day
// there is a towel too.
class SpaceSwitcher final : public Gtk::Box {
 public:
  // The store and the drag outlive the switcher.
  explicit SpaceSwitcher(BrowserStore& store, SidebarDrag& drag);

 private:
  struct Seal {
    Gtk::Button button;
    Effect look;
  };
  void makeSeals();
  void addSeal(const std::shared_ptr<Space>& space);
  void bringIntoView();
  void bringIntoViewLater();
  void addWheel();
  // A tab that is dropped on the seal moves to the space's tabs of today.
  void takeDrops(Gtk::Widget& seal, const std::shared_ptr<Space>& space);
  // Shows and takes away the towel at midnight.
  static Task<> followDate(Scheduler& scheduler, SpaceSwitcher& switcher);

  BrowserStore& store_;
  SidebarDrag& drag_;
  Gtk::ScrolledWindow scroller_;
  Gtk::Box row_;
  TowelButton towel_;
  IconButton newSpace_;
  std::vector<std::unique_ptr<Seal>> seals_;
  Gtk::Widget* active_ = nullptr;  // the active space's seal
  bool isBringing_ = false;
  Effect spaces_;
  TaskHandle date_;
};

// The row of tools above the spaces; the button of the main menu is its last.
class ToolsRow final : public Gtk::Box {
 public:
  explicit ToolsRow(BrowserStore& store);

  void setPalette(const Palette& palette) { downloads_.setPalette(palette); }

  void toggleMainMenu();

 private:
  BrowserStore& store_;
  DownloadsButton downloads_;
  IconButton menu_;
};

}  // namespace orvel
