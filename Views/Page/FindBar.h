#pragma once

#include <gtkmm/box.h>
#include <gtkmm/label.h>

#include "Base/Observable.h"
#include "DesignSystem/Icons.h"
#include "DesignSystem/SpringAnimation.h"
#include "DesignSystem/StyleSheet.h"
#include "Models/Tab/PageSearch.h"
#include "Views/Support/KeyTextField.h"

namespace orvel {

class BrowserStore;

// The bar over the page that searches it while one types. It shows while the store is finding, and
// ends that when another tab is selected.
class FindBar final : public Gtk::Box {
 public:
  // The store outlives the bar.
  explicit FindBar(BrowserStore& store);

  ThemeRoot& theme() { return theme_; }
  KeyTextField& field() { return field_; }
  // How far it still lies above its place, in pixels.
  double rise() const { return (1 - presence_.value()) * 8; }

 private:
  KeyTextField::Actions fieldActions();
  void follow(const Wake& wake);
  void begin(const FindState& state);
  void end();
  // Not now: what notices the other tab may change nothing.
  void hideSoon();

  BrowserStore& store_;
  ThemeRoot theme_;
  KeyTextField field_;
  Gtk::Label notFound_;
  IconButton previous_;
  IconButton next_;
  IconButton close_;
  SpringAnimation presence_;
  bool isShown_ = false;
  int calls_ = 0;
  std::optional<UUID> tab_;  // the one that it was opened for
  Effect follow_;
};

}  // namespace orvel
