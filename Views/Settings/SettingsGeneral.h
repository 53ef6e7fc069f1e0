#pragma once

#include <gtkmm/entry.h>

#include "BrowserCore/UUID.h"
#include "DesignSystem/Icons.h"
#include "Models/Settings/Settings.h"
#include "Views/Settings/ChoiceButton.h"
#include "Views/Settings/SettingsPage.h"

namespace orvel {

class QuickBar;
class Workspace;

class SettingsGeneral final : public SettingsPage {
 public:
  // All outlive the page.
  SettingsGeneral(Settings& settings, QuickBar& quickBar, Workspace& workspace);

  // Asks the desktop anew which browser is the default.
  void refresh();

 private:
  struct ShortcutRow final : Gtk::Box {
    ShortcutRow(Settings& settings, const UUID& id);
    void show(const SearchShortcut& shortcut);

    UUID id;
    Gtk::Entry keyword;
    Gtk::Entry name;
    Gtk::Entry urlTemplate;
    IconButton remove;
  };

  void addBrowser();
  void addArchive();
  void addPictureInPicture();
  void addQuickBar();
  void addShortcuts();
  void showEngine();
  void showQuickBar();
  void showShortcuts();

  // Outlived by answers that come when the page is gone.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  QuickBar& bar_;
  Workspace& workspace_;
  Settings& settings_;
  Gtk::Button makeDefault_;
  Gtk::Label isDefault_;
  Gtk::Label* defaultNote_ = nullptr;  // shown when the desktop did not do it
  ChoiceButton engine_;
  SettingSwitch suggestions_;
  Gtk::Label* suggestionsTitle_ = nullptr;
  Gtk::Label* suggestionsNote_ = nullptr;
  ChoiceButton archive_;
  SettingSwitch pictureInPicture_;
  ChoiceButton quickBar_;
  Gtk::Label* quickBarNote_ = nullptr;
  Gtk::Box shortcutList_;
  EditedRows<ShortcutRow> shortcuts_;
  Gtk::Button addShortcut_;
  Gtk::Button restore_;
  Effect engineEffect_;
  Effect archiveEffect_;
  Effect quickBarEffect_;
  Effect shortcutsEffect_;
};

}  // namespace orvel
