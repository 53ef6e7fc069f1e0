#pragma once

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/entry.h>
#include <gtkmm/label.h>
#include <gtkmm/stack.h>

#include "DesignSystem/CompassNeedle.h"
#include "DesignSystem/Icons.h"
#include "Models/BrowserStore.h"
#include "Views/TypedText.h"

namespace orvel {

// The selected tab's address. While the store asks for the command bar the pill is an entry, in
// which an address or a search is typed.
class AddressPill final : public Gtk::Box {
 public:
  // The store outlives the pill.
  explicit AddressPill(BrowserStore& store);

  void setPalette(const Palette& palette) { needle_.setPalette(palette); }
  Gtk::Entry& entry() { return entry_; }

 private:
  void showAddress();
  void showShield();
  void showEntry();
  void submit();

  BrowserStore& store_;
  Gtk::Stack glyph_;
  Gtk::Image icon_;
  CompassNeedle needle_;
  Gtk::Stack field_;
  Gtk::Button address_;
  Gtk::Label host_;
  Gtk::Entry entry_;
  IconButton shield_;
  IconButton link_;
  bool isEditing_ = false;
  Effect addressEffect_;
  Effect shieldEffect_;
  Effect entryEffect_;
};

}  // namespace orvel
