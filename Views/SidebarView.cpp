#include "Views/SidebarView.h"

namespace orvel {

namespace {

constexpr double kFloatingRadius = 12;

}  // namespace

SidebarView::SidebarView(BrowserStore& store)
    : store_(store),
      theme_(Gtk::Widget::gobj()),
      column_(Gtk::Orientation::VERTICAL),
      topBar_(store),
      pill_(store),
      tools_(store),
      spaces_(store) {
  add_css_class("theme-root");
  set_child(ground_);
  add_overlay(column_);
  set_measure_overlay(column_, true);
  column_.append(topBar_);
  column_.append(pill_);
  column_.append(tools_);
  column_.append(spaces_);
  setStance(Stance::Docked);
  space_ = effect([this] {
    const auto space = store_.activeSpace();
    untracked([&] { showSpace(space); });
  });
}

void SidebarView::showSpace(const std::shared_ptr<Space>& space) {
  if (section_ && section_->space() == space) return;
  if (section_) column_.remove(*section_);
  section_ = std::make_unique<SpaceSection>(store_, space, drag_);
  column_.insert_child_after(*section_, pill_);
}

void SidebarView::setStance(Stance stance) {
  const bool isFloating = stance == Stance::Floating;
  // Called while the window is laid out: nothing here may ask for another layout.
  ground_.set_opacity(isFloating ? 1 : 0);
  ground_.setCornerRadius(isFloating ? kFloatingRadius : 0);
  setClass(Gtk::Widget::gobj(), "floating", isFloating);
}

void SidebarView::setTheme(const Theme& theme, ColorScheme scheme) {
  theme_.set(theme, scheme);
  ground_.set(theme.in(scheme).backdrop);
  pill_.setPalette(paletteOf(theme, scheme));
}

}  // namespace orvel
