#pragma once

#include <gtkmm/box.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/windowhandle.h>

#include "DesignSystem/SpringAnimation.h"
#include "DesignSystem/StyleSheet.h"
#include "Views/Spaces/SpaceEditor.h"

namespace orvel {

// The dimmed layer over the window with the editor of the store's draft on it; gone without a
// draft. Each draft has an editor of its own.
class SpaceSheet final : public Gtk::Box {
 public:
  // The store outlives the sheet.
  explicit SpaceSheet(BrowserStore& store);

  void setTheme(const Theme& theme, ColorScheme scheme);
  // Null without a draft.
  SpaceEditor* editor() { return editor_.get(); }

 private:
  void follow(const std::optional<SpaceDraft>& draft);

  BrowserStore& store_;
  ThemeRoot theme_;
  Gtk::WindowHandle handle_;
  Gtk::ScrolledWindow card_;
  std::unique_ptr<SpaceEditor> editor_;
  std::optional<UUID> draftID_;
  SpringAnimation presence_;
  Effect follow_;
};

}  // namespace orvel
