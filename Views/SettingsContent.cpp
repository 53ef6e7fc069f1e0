#include "Views/SettingsContent.h"

#include <glib/gi18n.h>
#include <gtkmm/label.h>

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
    : general_(store), privacy_(store), links_(store) {
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
  if (!buttons_.empty()) button->set_group(*buttons_.front());
  button->signal_toggled().connect([this, button, page] {
    if (button->get_active()) show(page);
  });
  tabs_.append(*button);
  buttons_.push_back(button);
}

void SettingsContent::show(Page page) {
  const auto index = static_cast<size_t>(page);
  buttons_[index]->set_active(true);
  pages_.set_visible_child(buttons_[index]->get_label());
}

}  // namespace orvel
