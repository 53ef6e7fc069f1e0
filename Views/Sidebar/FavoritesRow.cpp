#include "Views/Sidebar/FavoritesRow.h"

#include "BrowserCore/Addresses/URLInput.h"
#include "DesignSystem/Icons.h"
#include "DesignSystem/ShownText.h"
#include "DesignSystem/StyleSheet.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageClosing.h"
#include "Views/Sidebar/SidebarLayout.h"
#include "Views/Sidebar/SidebarMenus.h"

namespace orvel {

namespace {

constexpr int kGap = 8;
constexpr int kIconSize = 18;
constexpr size_t kMaxColumns = 4;

}  // namespace

FavoriteTile::FavoriteTile(SidebarContext& context)
    : context_(context), site_(kIconSize, IconPlace::InButton) {
  add_css_class("tile");
  set_child(site_);
  signal_clicked().connect([this] {
    if (tab_) context_.store.select(tab_, context_.space);
  });

  installContextMenu(*this, [this] {
    return tab_ ? tabMenu(context_.store, context_.space, tab_) : std::vector<MenuEntry>();
  });
  auto click = Gtk::GestureClick::create();
  click->set_button(GDK_BUTTON_MIDDLE);
  click->signal_released().connect([this](int, double, double) {
    if (tab_) context_.store.pageClosing.close(tab_);
  });
  add_controller(click);
  makeTabDragSource(
      *this, context_.drag, [this] { return tab_; },
      [this](bool isDragged) { set_opacity(isDragged ? 0.4 : 1); });
  show(nullptr);
}

void FavoriteTile::show(const TabRef& tab) {
  tab_ = tab;
  set_opacity(tab ? 1 : 0);
  set_can_target(tab != nullptr);
  set_focusable(tab != nullptr);
  setAccessibleHidden(*this, !tab);
  look_.stop();
  selection_.stop();
  if (!tab) return set_has_tooltip(false);
  look_ = effect([this] {
    const auto title = shownText(tab_->displayTitle());
    setTooltip(*this, title);
    setAccessibleLabel(*this, title);
    const auto& url = tab_->url.get();
    site_.set(tab_->favicon(), url ? displayHost(*url) : std::string());
  });
  selection_ = effect([this] {
    setClass(Gtk::Widget::gobj(), "selected", context_.space->selectedTabID.get() == tab_->id);
  });
}

FavoritesRow::FavoritesRow(SidebarContext& context) : RowWidget(kGap), context_(context) {
  setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_LIST_ITEM);
  add_css_class("favorites");
  set_homogeneous(true);
  for (size_t i = 0; i < kMaxColumns; ++i) {
    tiles_.push_back(std::make_unique<FavoriteTile>(context));
    tiles_.back()->set_hexpand(true);
    append(*tiles_.back());
  }
}

void FavoritesRow::bind(const SidebarRow& row) {
  const size_t columns = std::max(
      row.tabs.size(), untracked([this] { return favoriteColumns(context_.store.chrome); }));
  for (size_t i = 0; i < tiles_.size(); ++i) {
    tiles_[i]->set_visible(i < columns);
    tiles_[i]->show(i < row.tabs.size() ? row.tabs[i] : nullptr);
  }
}

void FavoritesRow::unbind() {
  for (auto& tile : tiles_) tile->show(nullptr);
}

}  // namespace orvel
