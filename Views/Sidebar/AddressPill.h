#pragma once

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/stack.h>

#include "Base/Observable.h"
#include "DesignSystem/CompassNeedle.h"
#include "DesignSystem/Icons.h"
#include "Views/SiteSettings/SiteSettingsView.h"
#include "Views/Support/Panel.h"

namespace orvel {

class BrowserStore;

// The selected tab's address. A click opens the command bar, where another is typed.
class AddressPill final : public Gtk::Box {
 public:
  // The store outlives the pill.
  explicit AddressPill(BrowserStore& store);

  void setPalette(const Palette& palette) { needle_.setPalette(palette); }
  Gtk::Button& address() { return address_; }

 private:
  void openBar();
  void openSite();
  void showAddress();
  void showShield();
  void showUse();

  BrowserStore& store_;
  Gtk::Button site_;
  Gtk::Stack glyph_;
  Gtk::Image icon_;
  CompassNeedle needle_;
  Gtk::Button address_;
  Gtk::Label host_;
  IconButton shield_;
  IconButton link_;
  IconButton inUse_;
  SiteSettingsView settings_;
  Panel panel_;
  Effect addressEffect_;
  Effect shieldEffect_;
  Effect useEffect_;
};

}  // namespace orvel
