#include "Views/Settings/SettingsContent.h"

#include <gtkmm/label.h>

#include "Base/Texts.h"
#include "Models/Settings/Settings.h"
#include "Models/Store/BrowserStore.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel {

namespace {

// Extensions come with their own list; until one is there the page says so.
Gtk::Widget& makeExtensionsPage() {
  auto* label = Gtk::make_managed<Gtk::Label>(_("No extensions yet."));
  label->add_css_class("quiet");
  return *label;
}

}  // namespace

SettingsContent::SettingsContent(BrowserStore& store)
    : tabs_(ChoiceRow::Kind::Tabs, _("Settings")),
      general_(store.settings, store.quickBar, store.services().desktop.workspace),
      privacy_(store.contentBlocker, store.settings, [&store] { store.clearHistory(); }),
      links_(store) {
  tabs_.set_valign(Gtk::Align::CENTER);
  addPage(Page::General, _("General"), general_);
  addPage(Page::Privacy, _("Privacy"), privacy_);
  addPage(Page::Links, _("Links"), links_);
  addPage(Page::Extensions, _("Extensions"), makeExtensionsPage());
  show(Page::General);
}

void SettingsContent::addPage(Page page, const char* title, Gtk::Widget& content) {
  pages_.add(content, title);
  auto* button = Gtk::make_managed<Gtk::ToggleButton>(title);
  button->add_css_class("settings-tab");
  tabs_.add(*button, page == Page::General, [this, page] { show(page); });
  titles_.emplace_back(title);
}

void SettingsContent::show(Page page) {
  const auto index = static_cast<size_t>(page);
  tabs_.setChosen(index);
  pages_.set_visible_child(titles_[index]);
}

}  // namespace orvel
