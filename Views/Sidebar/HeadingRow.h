#pragma once

#include <gtkmm/label.h>

#include "DesignSystem/Icons.h"
#include "Views/Sidebar/ItemRow.h"

namespace orvel {

// The title of a section, with the button that belongs to it: "New Folder" for the pinned items,
// "Clear" for today's while the pointer is over the heading.
class HeadingRow final : public RowWidget {
 public:
  explicit HeadingRow(SidebarContext& context);

  void bind(const SidebarRow& row) override;
  void unbind() override;
  bool takeFocus() override;
  void setPointed(bool isPointed) override { setActive(isPointed); }

 private:
  void setActive(bool isActive);
  void showButtons();

  SidebarContext& context_;
  bool isToday_ = false;
  bool isActive_ = false;
  Gtk::Image* symbol_;
  Gtk::Label name_;
  Gtk::Box rule_;
  IconButton newFolder_;
  Gtk::Button clear_;
  Effect look_;
  Effect buttons_;
};

// The row that opens a new tab.
class NewTabRow final : public ItemRow {
 public:
  explicit NewTabRow(SidebarContext& context);

  void bind(const SidebarRow&) override {}
  void unbind() override { clearHover(); }

 private:
  void activate() override;

  SidebarContext& context_;
};

}  // namespace orvel
