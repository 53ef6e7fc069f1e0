#include "Views/SettingsWindow.h"

#include <adwaita.h>
#include <glib/gi18n.h>
#include <gtkmm/centerbox.h>
#include <gtkmm/windowhandle.h>

namespace orvel {

namespace {

constexpr int kWidth = 560;
constexpr int kHeight = 460;
constexpr int kControlIcon = 9;

// Extensions come with their own list; until one is there the page says so.
Gtk::Widget& makeExtensionsPage() {
  auto* label = Gtk::make_managed<Gtk::Label>(_("No extensions yet."));
  label->add_css_class("quiet");
  return *label;
}

}  // namespace

SettingsWindow::SettingsWindow(GtkWindow* parent, BrowserStore& store,
                               const Observable<ColorScheme>& scheme)
    : store_(store),
      window_(GTK_WINDOW(g_object_ref_sink(adw_window_new()))),
      root_(Gtk::Orientation::VERTICAL),
      theme_(root_.Gtk::Widget::gobj()),
      general_(store),
      privacy_(store),
      links_(store) {
  gtk_window_set_title(window_, _("Settings"));
  gtk_window_set_default_size(window_, kWidth, kHeight);
  gtk_window_set_transient_for(window_, parent);
  gtk_window_set_hide_on_close(window_, TRUE);
  gtk_widget_add_css_class(GTK_WIDGET(window_), "orvel");
  root_.add_css_class("settings-window");
  root_.append(makeHeader());
  pages_.set_vexpand(true);
  root_.append(pages_);
  addPage(Page::General, _("General"), general_);
  addPage(Page::Privacy, _("Privacy"), privacy_);
  addPage(Page::Links, _("Links"), links_);
  addPage(Page::Extensions, _("Extensions"), makeExtensionsPage());
  addKeys();
  adw_window_set_content(ADW_WINDOW(window_), root_.Gtk::Widget::gobj());
  show(Page::General);
  themeEffect_ = effect(
      [this, &scheme] { theme_.set(Theme::forHue(store_.activeSpace()->hue), scheme.get()); });
}

SettingsWindow::~SettingsWindow() {
  adw_window_set_content(ADW_WINDOW(window_), nullptr);
  gtk_window_destroy(window_);
  g_object_unref(window_);
}

Gtk::Widget& SettingsWindow::makeHeader() {
  auto* handle = Gtk::make_managed<Gtk::WindowHandle>();
  auto* bar = Gtk::make_managed<Gtk::CenterBox>();
  bar->add_css_class("settings-header");
  auto* close = Gtk::make_managed<Gtk::Button>();
  close->set_child(*makeIcon("window.close", kControlIcon));
  close->add_css_class("window-control");
  close->set_valign(Gtk::Align::CENTER);
  close->set_tooltip_text(_("Close Window"));
  setAccessibleLabel(*close, _("Close Window"));
  gtk_actionable_set_action_name(GTK_ACTIONABLE(close->gobj()), "window.close");
  bar->set_start_widget(*close);
  tabs_.set_valign(Gtk::Align::CENTER);
  bar->set_center_widget(tabs_);
  handle->set_child(*bar);
  return *handle;
}

void SettingsWindow::addPage(Page page, const char* title, Gtk::Widget& content) {
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

void SettingsWindow::addKeys() {
  auto* controller = GTK_SHORTCUT_CONTROLLER(gtk_shortcut_controller_new());
  gtk_shortcut_controller_set_scope(controller, GTK_SHORTCUT_SCOPE_GLOBAL);
  gtk_shortcut_controller_add_shortcut(
      controller, gtk_shortcut_new(gtk_shortcut_trigger_parse_string("Escape|<Control>w"),
                                   gtk_named_action_new("window.close")));
  gtk_widget_add_controller(GTK_WIDGET(window_), GTK_EVENT_CONTROLLER(controller));
}

void SettingsWindow::show(Page page) {
  const auto index = static_cast<size_t>(page);
  buttons_[index]->set_active(true);
  pages_.set_visible_child(buttons_[index]->get_label());
}

void SettingsWindow::present() {
  general_.refresh();
  gtk_window_present(window_);
}

}  // namespace orvel
