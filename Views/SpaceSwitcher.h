#pragma once

#include <gtkmm/box.h>

#include <memory>
#include <vector>

#include "DesignSystem/Icons.h"
#include "Models/BrowserStore.h"

namespace orvel {

// One seal for each space, in order, and the button that makes a new one. A click on a seal goes to
// its space; its menu edits and deletes it.
class SpaceSwitcher final : public Gtk::Box {
 public:
  // The store outlives the switcher.
  explicit SpaceSwitcher(BrowserStore& store);

 private:
  struct Seal {
    Gtk::Button button;
    Effect look;
  };
  void makeSeals();
  void addSeal(const std::shared_ptr<Space>& space);

  BrowserStore& store_;
  Gtk::Box row_;
  IconButton newSpace_;
  std::vector<std::unique_ptr<Seal>> seals_;
  Effect spaces_;
};

// The row of tools above the spaces; the button of the main menu is its last.
class ToolsRow final : public Gtk::Box {
 public:
  explicit ToolsRow(BrowserStore& store);

  void toggleMainMenu();

 private:
  BrowserStore& store_;
  IconButton menu_;
};

}  // namespace orvel
