#pragma once

#include <gtkmm/box.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/windowhandle.h>

#include <functional>

#include "DesignSystem/SpringAnimation.h"
#include "DesignSystem/StyleSheet.h"
#include "Views/Spaces/SpaceEditor.h"

namespace orvel {

// The dimmed layer over the window with the editor of the store's draft on it; gone without a
// draft. Each draft has an editor of its own.
class SpaceSheet final : public Gtk::Box {
 public:
  // The store outlives the sheet. `isKeptFree` tells, of a point of the sheet's, that what lies
  // below stays in reach.
  SpaceSheet(BrowserStore& store, SpaceEditing& editing,
             std::function<bool(double x, double y)> isKeptFree);

  void setTheme(const Theme& theme, ColorScheme scheme);
  // Null without a draft.
  SpaceEditor* editor() { return editor_.get(); }

 protected:
  bool contains_vfunc(double x, double y) const override {
    return Gtk::Widget::contains_vfunc(x, y) && !isKeptFree_(x, y);
  }

 private:
  void follow(const std::optional<SpaceDraft>& draft);

  BrowserStore& store_;
  SpaceEditing& editing_;
  const std::function<bool(double, double)> isKeptFree_;
  ThemeRoot theme_;
  Gtk::WindowHandle handle_;
  Gtk::ScrolledWindow card_;
  std::unique_ptr<SpaceEditor> editor_;
  std::optional<UUID> draftID_;
  SpringAnimation presence_;
  Effect follow_;
};

}  // namespace orvel
