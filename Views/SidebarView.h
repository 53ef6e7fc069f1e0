#pragma once

#include <gtkmm/overlay.h>

#include "DesignSystem/BlendedGradient.h"
#include "DesignSystem/StyleSheet.h"
#include "Views/AddressPill.h"
#include "Views/SidebarTopBar.h"
#include "Views/SpaceSection.h"
#include "Views/SpaceSwitcher.h"

namespace orvel {

// The browser's tab strip and address bar in one.
class SidebarView final : public Gtk::Overlay {
 public:
  // The store outlives the view.
  explicit SidebarView(BrowserStore& store);

  // Docked it stands on the window's backdrop; floating it is a panel with one of its own.
  enum class Stance { Docked, Floating };
  void setStance(Stance stance);
  void setTheme(const Theme& theme, ColorScheme scheme);

  SidebarTopBar& topBar() { return topBar_; }
  AddressPill& pill() { return pill_; }
  ToolsRow& tools() { return tools_; }
  SpaceSection& section() { return *section_; }

 private:
  void showSpace(const std::shared_ptr<Space>& space);

  BrowserStore& store_;
  ThemeRoot theme_;
  BlendedGradient ground_;
  Gtk::Box column_;
  SidebarTopBar topBar_;
  AddressPill pill_;
  ToolsRow tools_;
  SpaceSwitcher spaces_;
  SidebarDrag drag_;
  std::unique_ptr<SpaceSection> section_;
  Effect space_;
};

}  // namespace orvel
