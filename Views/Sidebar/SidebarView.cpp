#include "Views/Sidebar/SidebarView.h"

namespace orvel {

namespace {

constexpr double kFloatingRadius = 12;

}  // namespace

SidebarView::SidebarView(BrowserStore& store, const Observable<ColorScheme>& scheme)
    : column_(Gtk::Orientation::VERTICAL),
      head_(Gtk::Orientation::VERTICAL),
      foot_(Gtk::Orientation::VERTICAL),
      scheme_(Gtk::Widget::gobj()),
      headTheme_(head_.Gtk::Widget::gobj()),
      footTheme_(foot_.Gtk::Widget::gobj()),
      topBar_(store),
      pill_(store),
      pager_(store, drag_, scheme),
      tools_(store),
      spaces_(store, drag_) {
  set_child(ground_);
  add_overlay(column_);
  set_measure_overlay(column_, true);
  head_.append(topBar_);
  head_.append(pill_);
  foot_.append(tools_);
  foot_.append(spaces_);
  column_.append(head_);
  column_.append(pager_);
  column_.append(foot_);
  setStance(Stance::Docked);
}

void SidebarView::setStance(Stance stance) {
  const bool isFloating = stance == Stance::Floating;
  // Called while the window is laid out: nothing here may ask for another layout.
  ground_.set_opacity(isFloating ? 1 : 0);
  ground_.setCornerRadius(isFloating ? kFloatingRadius : 0);
  setClass(Gtk::Widget::gobj(), "floating", isFloating);
}

void SidebarView::setTheme(const Theme& theme, ColorScheme scheme) {
  scheme_.set(scheme);
  headTheme_.set(theme, scheme);
  footTheme_.set(theme, scheme);
  const Palette palette = paletteOf(theme, scheme);
  pill_.setPalette(palette);
  tools_.setPalette(palette);
}

}  // namespace orvel
