#pragma once

#include <gtkmm/label.h>

#include "DesignSystem/Icons.h"
#include "DesignSystem/SiteIcon.h"
#include "Views/Sidebar/ItemRow.h"

namespace orvel {

// A tab of a list: its site's icon, title, marks, and on hover what can be done with it.
class TabRow final : public ItemRow {
 public:
  explicit TabRow(SidebarContext& context);

  void bind(const SidebarRow& row) override;
  void unbind() override;

 private:
  void activate() override;
  void middleClicked() override;
  void hoverChanged(bool isHovered) override;
  std::vector<MenuEntry> menu() override;
  bool keyPressed(guint key) override;

  void showPage();
  void showState();
  void showButtons();

  SidebarContext& context_;
  TabRef tab_;
  SiteIcon site_;
  Gtk::Label title_;
  Gtk::Box ends_;
  Gtk::Image unresponsive_;
  Gtk::Image inUse_;
  IconButton mute_;
  Gtk::Image split_;
  IconButton home_;
  IconButton close_;
  bool isHovered_ = false;
  Effect page_;
  Effect state_;
  Effect buttons_;
};

}  // namespace orvel
