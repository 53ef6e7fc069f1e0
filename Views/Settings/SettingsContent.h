#pragma once

#include <gtkmm/stack.h>

#include "Views/Settings/ChoiceRow.h"
#include "Views/Settings/SettingsGeneral.h"
#include "Views/Settings/SettingsLinks.h"
#include "Views/Settings/SettingsPrivacy.h"
#include "Views/Window/UtilityWindows.h"

namespace orvel {

// The user's choices, a page for each kind; the header chooses among them.
class SettingsContent final : public UtilityContent {
 public:
  enum class Page { General, Privacy, Links, Extensions };

  // The store outlives it.
  explicit SettingsContent(BrowserStore& store);

  void show(Page page);

  Gtk::Widget& body() override { return pages_; }
  Gtk::Widget* header() override { return &tabs_; }
  void willShow() override { general_.refresh(); }

 private:
  void addPage(Page page, const char* title, Gtk::Widget& content);

  ChoiceRow tabs_;
  Gtk::Stack pages_;
  SettingsGeneral general_;
  SettingsPrivacy privacy_;
  SettingsLinks links_;
  std::vector<std::string> titles_;
};

}  // namespace orvel
