#pragma once

#include <gtkmm/scrolledwindow.h>

#include "Views/Sidebar/ItemRow.h"
#include "Views/Support/RowList.h"

namespace orvel {

// The tabs of a space: favorites, pinned items and today's, as one scrolling list.
class SpaceSection final : public Gtk::ScrolledWindow, private RowList::Delegate {
 public:
  // `store` and `drag` outlive the section. It is empty until it is shown a space.
  SpaceSection(BrowserStore& store, SidebarDrag& drag);

  // Takes over another space's tabs, with the row widgets that are there; null: nobody's.
  void show(std::shared_ptr<Space> space);
  const std::shared_ptr<Space>& space() const { return context_.space; }
  RowList& list() { return list_; }

 private:
  std::unique_ptr<RowWidget> makeRow(SidebarRow::Kind kind) override;
  std::optional<RowDrop> dropAt(const RowPoint& point, Dragged what) override;
  bool drop(const RowPoint& point) override;
  void dropLink(const RowPoint& point, const URL& link) override;
  bool moveRow(size_t index, int step) override;
  void showRows(const std::optional<Spring>& motion);
  void scrollToSelection();
  // Brings the folder that is being renamed into view, with the keyboard.
  void showRenaming();
  size_t columns() const;

  SidebarContext context_;
  RowList list_;
  Effect rows_;
  Effect selection_;
  Effect renaming_;
  bool isRenamingAhead_ = false;  // of the row that shows the folder
};

}  // namespace orvel
