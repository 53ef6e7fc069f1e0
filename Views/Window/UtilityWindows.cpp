#include "Views/Window/UtilityWindows.h"

#include <adwaita.h>
#include <gtkmm/box.h>
#include <gtkmm/centerbox.h>
#include <gtkmm/label.h>
#include <gtkmm/windowhandle.h>

#include "Base/Texts.h"
#include "DesignSystem/Icons.h"
#include "DesignSystem/StyleSheet.h"
#include "Models/Commands/CommandList.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Store/BrowserStore.h"
#include "Views/Window/AboutWindow.h"
#include "Views/Window/Accelerators.h"
#include "Views/Window/WindowFrame.h"

namespace orvel {

namespace {

constexpr int kControlIcon = 9;

struct Place {
  const char* title;
  int width;
  int height;
  bool isResizable;
};

Place placeOf(UtilityWindow which) {
  switch (which) {
    case UtilityWindow::About:
    case UtilityWindow::Settings:
      break;
    case UtilityWindow::History:
      return {N_("History"), 620, 640, true};
    case UtilityWindow::BugReport:
      return {N_("Report a Bug"), 520, 430, false};
  }
  return {N_("Settings"), 560, 460, false};
}

Gtk::Button& makeControl(const char* symbol, const char* action, const char* name) {
  auto* control = Gtk::make_managed<Gtk::Button>();
  control->set_child(*makeIcon(symbol, kControlIcon, IconPlace::InButton));
  control->add_css_class("window-control");
  control->set_valign(Gtk::Align::CENTER);
  control->set_tooltip_text(name);
  setAccessibleLabel(*control, name);
  gtk_actionable_set_action_name(GTK_ACTIONABLE(control->gobj()), action);
  return *control;
}

}  // namespace

// What the desktop has of a window, from its opening to its close.
class UtilityWindows::Window {
 public:
  Window(const Place& place, BrowserStore& store, const Observable<ColorScheme>& scheme,
         UtilityContent& content, std::function<void()> didClose)
      : window_(GTK_WINDOW(g_object_ref_sink(adw_window_new()))),
        desktopWindow_(window_),
        root_(Gtk::Orientation::VERTICAL),
        theme_(root_.Gtk::Widget::gobj()),
        content_(content),
        didClose_(std::move(didClose)) {
    gtk_window_set_title(window_, _(place.title));
    g_signal_connect_swapped(window_, "close-request", G_CALLBACK(+[](Window* self) -> gboolean {
                               self->didClose_();
                               return TRUE;
                             }),
                             this);
    gtk_widget_add_css_class(GTK_WIDGET(window_), "orvel");
    followContrast(GTK_WIDGET(window_));
    root_.add_css_class("utility-window");
    root_.append(makeHeader(place));
    content_.body().set_vexpand(true);
    root_.append(content_.body());
    if (place.isResizable) {
      gtk_window_set_default_size(window_, place.width, place.height);
      frame_ =
          std::make_unique<WindowFrame>(window_, store.services().defaults,
                                        std::string("Orvel") + place.title + "Window");  // no text
    } else {
      root_.set_size_request(place.width, place.height);
      gtk_window_set_resizable(window_, FALSE);
    }
    addKeys(store);
    adw_window_set_content(ADW_WINDOW(window_), root_.Gtk::Widget::gobj());
    themeEffect_ = effect([this, &store, &scheme] {
      theme_.set(Theme::forHue(store.activeSpace()->hue), scheme.get());
    });
  }
  ~Window() {
    g_signal_handlers_disconnect_by_data(window_, this);
    // A menu that is still open takes the keyboard along.
    gtk_window_set_focus(window_, nullptr);
    root_.remove(content_.body());
    gtk_center_box_set_center_widget(bar_.gobj(), nullptr);
    frame_.reset();
    adw_window_set_content(ADW_WINDOW(window_), nullptr);
    gtk_window_destroy(window_);
    g_object_unref(window_);
  }
  Window(const Window&) = delete;

  void show() {
    content_.willShow();
    gtk_window_present(window_);
  }
  GtkDesktopWindow& desktopWindow() { return desktopWindow_; }

 private:
  Gtk::Widget& makeHeader(const Place& place) {
    bar_.add_css_class("utility-header");
    auto* controls = Gtk::make_managed<Gtk::Box>();
    controls->add_css_class("window-controls");
    controls->append(makeControl("window.close", "window.close", _("Close Window")));
    if (place.isResizable)
      controls->append(makeControl("window.minimize", "window.minimize", _("Minimize Window")));
    bar_.set_start_widget(*controls);
    if (auto* header = content_.header()) {
      bar_.set_center_widget(*header);
    } else {
      auto* title = Gtk::make_managed<Gtk::Label>(_(place.title));
      title->add_css_class("utility-title");
      bar_.set_center_widget(*title);
    }
    auto* handle = Gtk::make_managed<Gtk::WindowHandle>();
    handle->set_child(bar_);
    return *handle;
  }

  void addKeys(BrowserStore& store) {
    installAccelerators(GTK_WIDGET(window_), store.commands,
                        [this, &store](ActionID action) -> std::optional<bool> {
                          if (action == ActionID::CloseTab || action == ActionID::Stop) {
                            gtk_window_close(window_);
                            return true;
                          }
                          if (action == ActionID::Find && content_.beginSearch()) return true;
                          if (store.spaceEditing.spaceDraft.peek() && !worksUnderSheet(action))
                            return false;
                          return std::nullopt;
                        });
  }

  GtkWindow* window_;
  GtkDesktopWindow desktopWindow_;
  Gtk::Box root_;
  Gtk::CenterBox bar_;
  ThemeRoot theme_;
  UtilityContent& content_;
  std::function<void()> didClose_;
  std::unique_ptr<WindowFrame> frame_;
  Effect themeEffect_;
};

UtilityWindows::UtilityWindows(GtkWindow* main, BrowserStore& store,
                               const Observable<ColorScheme>& scheme)
    : main_(main), store_(store), scheme_(scheme) {}

UtilityWindows::~UtilityWindows() {
  for (const auto& [which, window] : windows_)
    if (window && willGo) willGo(window->desktopWindow());
}

UtilityContent* UtilityWindows::content(UtilityWindow which) {
  auto& content = contents_[which];
  const auto factory = factories_.find(which);
  if (!content && factory != factories_.end()) content = factory->second();
  return content.get();
}

UtilityWindows::Window* UtilityWindows::window(UtilityWindow which) {
  auto& window = windows_[which];
  auto* filling = content(which);
  if (!window && filling) {
    window = std::make_unique<Window>(placeOf(which), store_, scheme_, *filling,
                                      [this, which] { close(which); });
    if (didMake) didMake(window->desktopWindow());
  }
  return window.get();
}

// A window is never hidden: the toolkit ends the program when a screen reader asks it for one that
// is. It goes on the next turn, as it has just been asked to close.
void UtilityWindows::close(UtilityWindow which) {
  store_.services().scheduler.post([this, which, alive = std::weak_ptr(isAlive_)] {
    if (alive.expired() || !windows_[which]) return;
    if (willGo) willGo(windows_[which]->desktopWindow());
    windows_[which].reset();
  });
}

bool UtilityWindows::show(UtilityWindow which) {
  if (which == UtilityWindow::About) {
    presentAboutWindow(main_);
    return true;
  }
  auto* wanted = window(which);
  if (wanted) wanted->show();
  return wanted != nullptr;
}

void UtilityWindows::closeBugReport() {
  const auto found = windows_.find(UtilityWindow::BugReport);
  if (found != windows_.end() && found->second) found->second->desktopWindow().close();
}

GtkWindow* UtilityWindows::native(UtilityWindow which) {
  auto* wanted = window(which);
  return wanted ? wanted->desktopWindow().native() : nullptr;
}

}  // namespace orvel
