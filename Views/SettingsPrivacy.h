#pragma once

#include "Models/BrowserStore.h"
#include "Views/SettingsPage.h"

namespace orvel {

class SettingsPrivacy final : public SettingsPage {
 public:
  // The store outlives the page.
  explicit SettingsPrivacy(BrowserStore& store);

 private:
  void showPausedSites();
  void showPermissions();

  BrowserStore& store_;
  SettingSwitch blocking_;
  SettingSwitch cookies_;
  Gtk::Button clearHistory_;
  Gtk::Box* pausedSites_ = nullptr;
  Gtk::Box* permissions_ = nullptr;
  Effect pausedEffect_;
  Effect permissionsEffect_;
};

}  // namespace orvel
