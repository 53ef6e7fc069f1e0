#include "Views/Sidebar/SidebarTopBar.h"

#include "Base/Texts.h"
#include "Models/Commands/ActionCatalog.h"

#include "Models/Store/BrowserStore.h"
#include "Models/Windows/WindowChrome.h"

namespace orvel {

namespace {

constexpr int kControlIcon = 9;

struct WindowControl {
  const char* symbol;
  const char* action;
  const char* name;
};
constexpr WindowControl kControls[] = {
    {"window.close", "window.close", N_("Close Window")},
    {"window.minimize", "window.minimize", N_("Minimize Window")},
    {"window.zoom", "window.toggle-maximized", N_("Maximize Window")},
};

}  // namespace

SidebarTopBar::SidebarTopBar(BrowserStore& store)
    : store_(store),
      toggle_("sidebar.left", withKeys(ActionID::ToggleSidebar)),
      back_("arrow.left", withKeys(ActionID::Back)),
      forward_("arrow.right", withKeys(ActionID::Forward)),
      reload_("arrow.clockwise", withKeys(_("Reload"), ActionID::Reload)) {
  auto* bar = Gtk::make_managed<Gtk::Box>();
  bar->add_css_class("sidebar-top");
  auto* controls = Gtk::make_managed<Gtk::Box>();
  controls->add_css_class("window-controls");
  for (size_t i = 0; i < windowButtons_.size(); ++i) {
    auto& button = windowButtons_[i];
    const auto& control = kControls[i];
    button.set_child(*makeIcon(control.symbol, kControlIcon, IconPlace::InButton));
    button.add_css_class("window-control");
    button.set_valign(Gtk::Align::CENTER);
    button.set_focusable(false);
    button.set_tooltip_text(_(control.name));
    setAccessibleLabel(button, _(control.name));
    gtk_actionable_set_action_name(GTK_ACTIONABLE(button.gobj()), control.action);
    controls->append(button);
  }
  bar->append(*controls);
  bar->append(toggle_);
  auto* space = Gtk::make_managed<Gtk::Box>();
  space->set_hexpand(true);
  bar->append(*space);
  bar->append(back_);
  bar->append(forward_);
  bar->append(reload_);
  set_child(*bar);

  const auto selected = [&store] { return store.activeSpace()->selectedTab(); };
  toggle_.signal_clicked().connect([&store] { store.chrome.toggleSidebar(); });
  back_.signal_clicked().connect([selected] {
    if (const auto tab = selected()) tab->goBack();
  });
  forward_.signal_clicked().connect([selected] {
    if (const auto tab = selected()) tab->goForward();
  });
  reload_.signal_clicked().connect([this, selected] {
    const auto tab = selected();
    if (!tab) return;
    if (isLoading_)
      tab->stopLoading();
    else
      tab->reload();
  });
  navigation_ = effect([this] { showNavigation(); });
}

std::array<GtkWidget*, 3> SidebarTopBar::windowButtons() {
  std::array<GtkWidget*, 3> widgets{};
  for (size_t i = 0; i < widgets.size(); ++i) widgets[i] = windowButtons_[i].Gtk::Widget::gobj();
  return widgets;
}

void SidebarTopBar::showNavigation() {
  const auto tab = store_.activeSpace()->selectedTab();
  back_.set_sensitive(tab && tab->canGoBack);
  forward_.set_sensitive(tab && tab->canGoForward);
  isLoading_ = tab && tab->isLoading;
  reload_.set_sensitive(tab && (isLoading_ || tab->url.get()));
  reload_.setSymbol(isLoading_ ? "xmark" : "arrow.clockwise");
  reload_.setHelp(isLoading_ ? withKeys(ActionID::Stop) : withKeys(_("Reload"), ActionID::Reload));
}

}  // namespace orvel
