#pragma once

#include <gtkmm/button.h>

#include "DesignSystem/SiteIcon.h"
#include "Views/Sidebar/ItemRow.h"

namespace orvel {

// One favorite: a tile with its site's icon.
class FavoriteTile final : public Gtk::Button {
 public:
  explicit FavoriteTile(SidebarContext& context);

  // Null leaves an empty place.
  void show(const TabRef& tab);

 private:
  SidebarContext& context_;
  TabRef tab_;
  SiteIcon site_;
  Effect look_;
  Effect selection_;
};

// One line of favorites.
class FavoritesRow final : public RowWidget {
 public:
  explicit FavoritesRow(SidebarContext& context);

  void bind(const SidebarRow& row) override;
  void unbind() override;
  bool takeFocus() override { return tiles_.front()->grab_focus(); }

 private:
  SidebarContext& context_;
  std::vector<std::unique_ptr<FavoriteTile>> tiles_;
};

}  // namespace orvel
