#include "Views/Page/EmptyState.h"

#include <gtkmm/box.h>
#include <gtkmm/grid.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>

#include "Base/Texts.h"
#include "Models/Commands/ActionCatalog.h"

namespace orvel {

namespace {

struct KeyHint {
  ActionID action;
  const char* text;
  const char* lastKey = "";  // of a range of keys
};
constexpr KeyHint kHints[] = {{ActionID::NewTab, N_("New tab")},
                              {ActionID::OpenLocation, N_("Open location")},
                              {ActionID::ToggleSidebar, N_("Toggle sidebar")},
                              {ActionID::TogglePin, N_("Pin tab")},
                              {ActionID::Space1, N_("Switch space"), "–9"}};
constexpr int kLineSpacing = 9;
constexpr int kColumnSpacing = 14;

}  // namespace

EmptyState::EmptyState() {
  add_css_class("empty");
  chart_.set_hexpand(true);
  chart_.set_vexpand(true);
  set_child(chart_);

  auto* ground = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
  ground->add_css_class("ground");
  ground->set_halign(Gtk::Align::CENTER);
  ground->set_valign(Gtk::Align::CENTER);
  auto* name = Gtk::make_managed<Gtk::Label>("Orvel");
  name->add_css_class("serif");
  name->add_css_class("name");
  auto* rule = Gtk::make_managed<Gtk::Box>();
  rule->add_css_class("accent-rule");
  rule->set_halign(Gtk::Align::CENTER);
  auto* keys = Gtk::make_managed<Gtk::Grid>();
  keys->set_row_spacing(kLineSpacing);
  keys->set_column_spacing(kColumnSpacing);
  keys->set_halign(Gtk::Align::CENTER);
  for (int line = 0; const auto& hint : kHints) {
    auto* cap =
        Gtk::make_managed<Gtk::Label>(shownKeys(actionInfo(hint.action).keys) + hint.lastKey);
    cap->add_css_class("key-cap");
    cap->set_halign(Gtk::Align::END);
    auto* text = Gtk::make_managed<Gtk::Label>(_(hint.text));
    text->add_css_class("quiet");
    text->set_halign(Gtk::Align::START);
    keys->attach(*cap, 0, line);
    keys->attach(*text, 1, line);
    ++line;
  }
  ground->append(*name);
  ground->append(*rule);
  ground->append(*keys);

  // In a small window the middle scrolls; the paper stays.
  auto* scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
  scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
  scroller->set_focusable(false);
  scroller->set_child(*ground);
  add_overlay(*scroller);
}

}  // namespace orvel
