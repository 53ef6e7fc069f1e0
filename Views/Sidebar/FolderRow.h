#pragma once

#include <gtkmm/entry.h>
#include <gtkmm/label.h>
#include <gtkmm/stack.h>

#include "DesignSystem/Icons.h"
#include "Views/Sidebar/ItemRow.h"

namespace orvel {

// A folder of pinned tabs: a click opens and closes it, its name is edited in place.
class FolderRow final : public ItemRow {
 public:
  explicit FolderRow(SidebarContext& context);

  void bind(const SidebarRow& row) override;
  void unbind() override;
  bool takeFocus() override;

 private:
  void activate() override;
  std::vector<MenuEntry> menu() override;
  bool keyPressed(guint key) override;

  void show();
  void showRenaming();
  enum class Renaming { Keep, Discard };
  void endRenaming(Renaming renaming);

  SidebarContext& context_;
  FolderRef folder_;
  Gtk::Image* chevron_;
  Gtk::Image* icon_;
  Gtk::Label name_;
  Gtk::Entry entry_;
  bool isRenaming_ = false;
  Effect look_;
  Effect renaming_;
};

}  // namespace orvel
