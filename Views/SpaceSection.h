#pragma once

#include <gtkmm/scrolledwindow.h>

#include "Views/ItemRow.h"
#include "Views/RowList.h"

namespace orvel {

// The tabs of one space: favorites, pinned items and today's, as one scrolling list.
class SpaceSection final : public Gtk::ScrolledWindow, private RowList::Delegate {
 public:
  // `store` and `drag` outlive the section.
  SpaceSection(BrowserStore& store, std::shared_ptr<Space> space, SidebarDrag& drag);

  const std::shared_ptr<Space>& space() const { return context_.space; }
  RowList& list() { return list_; }

 private:
  std::unique_ptr<RowWidget> makeRow(SidebarRow::Kind kind) override;
  std::optional<RowDrop> dropAt(const RowPoint& point) override;
  bool drop(const RowPoint& point) override;
  void scrollToSelection();
  size_t columns() const;

  SidebarContext context_;
  RowList list_;
  Effect rows_;
  Effect selection_;
};

}  // namespace orvel
