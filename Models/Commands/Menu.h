#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Models/Commands/ActionCatalog.h"

// Menus as values, apart from any toolkit.
namespace orvel {

struct Menu;

// An item with a submenu, one that does something, or, with neither, a separator.
struct MenuItem {
  std::string title;
  // Its identity, from which it has its keys. Absent for an item that has none.
  std::optional<ActionID> action;
  std::function<void()> perform;
  std::function<bool()> isOn;         // whether it is marked; empty: it never is
  std::function<bool()> isAvailable;  // empty: it always is
  bool isHidden = false;              // only its keys work
  std::shared_ptr<Menu> submenu;

  bool isSeparator() const { return !perform && !submenu; }
  bool isEnabled() const { return !isAvailable || isAvailable(); }
};

struct Menu {
  std::string title;
  std::vector<MenuItem> items;
  // Makes the items anew each time that they are wanted; empty: they are fixed.
  std::function<std::vector<MenuItem>()> makeItems;

  // Call it before reading `items`.
  void update() {
    if (makeItems) items = makeItems();
  }
};

}  // namespace orvel
