#pragma once

#include <gtkmm/gestureclick.h>

#include "Views/Sidebar/TabDragSource.h"
#include "Views/Support/Menu.h"
#include "Views/Support/RowWidget.h"

namespace orvel {

class BrowserStore;
class Folders;

// What the rows of a space work on; outlives them.
struct SidebarContext {
  BrowserStore& store;
  Folders& folders;
  std::shared_ptr<Space> space;
  SidebarDrag& drag;
};

// A row that is pointed at, pressed and opened: click, Return and Space open it, the second button
// and the menu key bring its menu.
class ItemRow : public RowWidget {
 protected:
  ItemRow();

  virtual void activate() = 0;
  virtual void middleClicked() {}
  virtual void hoverChanged(bool /*isHovered*/) {}
  virtual std::vector<MenuEntry> menu() { return {}; }
  // A key that the row knows beyond those of every row; returns whether it used it.
  virtual bool keyPressed(guint /*key*/) { return false; }

  // Indents the row by its depth in folders; deeper than three looks like three.
  void setDepth(size_t depth);
  void clearHover();

 public:
  void setPointed(bool isPointed) final;

 private:
  void showHover();
  void showMenu(double x, double y);
  bool handleKey(guint key, Gdk::ModifierType state);

  bool isMenuOpen_ = false;
  bool isPointed_ = false;
};

}  // namespace orvel
