#pragma once

#include <gtkmm/entry.h>

#include "Base/Observable.h"
#include "BrowserCore/Addresses/LinkRoute.h"
#include "BrowserCore/UUID.h"
#include "DesignSystem/Icons.h"
#include "Views/Settings/ChoiceButton.h"
#include "Views/Settings/SettingsPage.h"

namespace orvel {

class BrowserStore;

class SettingsLinks final : public SettingsPage {
 public:
  // The store outlives the page.
  explicit SettingsLinks(BrowserStore& store);

 private:
  struct RuleRow final : Gtk::Box {
    RuleRow(BrowserStore& store, const UUID& id);
    void show(const LinkRoute& route);

    BrowserStore& store;
    UUID id;
    Gtk::Entry site;
    ChoiceButton space;
    IconButton remove;
  };

  void showRules();

  BrowserStore& store_;
  ChoiceButton externalLinks_;
  Gtk::Box ruleList_;
  EditedRows<RuleRow> rules_;
  Gtk::Button addRule_;
  Effect externalLinksEffect_;
  Effect rulesEffect_;
};

}  // namespace orvel
