#pragma once

#include <gtkmm/overlay.h>

#include "DesignSystem/BlendedGradient.h"
#include "DesignSystem/StyleSheet.h"
#include "Views/Sidebar/AddressPill.h"
#include "Views/Sidebar/SidebarTopBar.h"
#include "Views/Spaces/SpacePager.h"
#include "Views/Spaces/SpaceSwitcher.h"

namespace orvel {

// The browser's tab strip and address bar in one.
class SidebarView final : public Gtk::Overlay {
 public:
  // The store and the scheme outlive the view.
  SidebarView(BrowserStore& store, const Observable<ColorScheme>& scheme);

  // Docked it stands on the window's backdrop; floating it is a panel with one of its own.
  enum class Stance { Docked, Floating };
  void setStance(Stance stance);
  void setTheme(const Theme& theme, ColorScheme scheme);

  SidebarTopBar& topBar() { return topBar_; }
  AddressPill& pill() { return pill_; }
  ToolsRow& tools() { return tools_; }
  SpacePager& pager() { return pager_; }
  SpaceSection& section() { return pager_.section(); }
  // What the panel lies on while it floats.
  BlendedGradient& ground() { return ground_; }

 private:
  BlendedGradient ground_;
  Gtk::Box column_;
  // Above and below the pages, which have themes of their own.
  Gtk::Box head_;
  Gtk::Box foot_;
  ThemeRoot scheme_;
  ThemeRoot headTheme_;
  ThemeRoot footTheme_;
  SidebarTopBar topBar_;
  AddressPill pill_;
  SidebarDrag drag_;
  SpacePager pager_;
  ToolsRow tools_;
  SpaceSwitcher spaces_;
};

}  // namespace orvel
