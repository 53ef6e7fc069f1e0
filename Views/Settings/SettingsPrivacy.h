#pragma once

#include "Views/Settings/SettingsPage.h"

namespace orvel {

class ContentBlocker;
class Settings;

class SettingsPrivacy final : public SettingsPage {
 public:
  // Both outlive the page. `clearHistory` is what its button does.
  SettingsPrivacy(ContentBlocker& blocker, Settings& settings, std::function<void()> clearHistory);

 private:
  // A site with what can be done about it.
  struct SiteRow final : Gtk::Box {
    SiteRow(const std::string& site, const char* action, const std::function<void()>& perform);

    std::string id;
    Gtk::Label* summary;
  };

  void showPausedSites();
  void showPermissions();

  ContentBlocker& blocker_;
  Settings& settings_;
  SettingSwitch blocking_;
  SettingSwitch cookies_;
  Gtk::Button clearHistory_;
  Gtk::Box pausedGroup_{Gtk::Orientation::VERTICAL};
  Gtk::Label* noPausedSites_ = nullptr;
  EditedRows<SiteRow> pausedSites_;
  Gtk::Box permissionsGroup_{Gtk::Orientation::VERTICAL};
  Gtk::Label* noPermissions_ = nullptr;
  EditedRows<SiteRow> permissions_;
  Effect pausedEffect_;
  Effect permissionsEffect_;
};

}  // namespace orvel
