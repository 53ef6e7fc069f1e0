// Shows the main window over a sample session, for looking at and for pictures.
//
//   view-preview [light|dark] [theme=NAME] [shoot=FILE] [empty|long|loading|contrast|toast|peek|
//                narrow|rtl|large|towel|swipe|space|main-menu|tab-menu|bar=TEXT|down=ROWS|find=TEXT|
//                history=TEXT|settings=PAGE]

#include <adwaita.h>
#include <glibmm/main.h>

#include <iostream>

#include "DesignSystem/StyleSheet.h"
#include "Tests/Views/SampleStore.h"
#include "Tests/Views/ViewTest.h"
#include "Views/BrowserView.h"
#include "Views/HistoryContent.h"
#include "Views/MainWindow.h"
#include "Views/SettingsContent.h"
#include "Views/SidebarMenus.h"

namespace {

using namespace orvel;
using namespace orvel::test;

constexpr unsigned kStep = 10;  // milliseconds

// Pages are guests: their ground is their own.
void paintPages() {
  auto* provider = gtk_css_provider_new();
  gtk_css_provider_load_from_data(
      provider,
      ".sample-page { background: white; color: #1c2427; }"
      ".scheme-dark .sample-page { background: #15181b; color: #e6e9ea; }",
      -1);
  gtk_style_context_add_provider_for_display(gdk_display_get_default(),
                                             GTK_STYLE_PROVIDER(provider),
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  g_object_unref(provider);
}

void later(unsigned milliseconds, std::function<void()> action) {
  Glib::signal_timeout().connect_once(std::move(action), milliseconds);
}

struct Preview {
  SampleStore sample;
  std::unique_ptr<MainWindow> window;
  std::string picture;
  GMainLoop* loop = g_main_loop_new(nullptr, FALSE);

  // What must stand before there is a window.
  void prepare(const std::string& state) {
    using namespace std::chrono;
    if (state == "towel") sample.world.scheduler.setDate(sys_days(2026y / May / 25) + hours(12));
    if (state == "rtl") gtk_widget_set_default_direction(GTK_TEXT_DIR_RTL);
    if (state == "large")
      g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", 144 * 1024, nullptr);
  }

  void apply(const std::string& state, const std::string& value) {
    auto& store = sample.store();
    const auto& space = store.activeSpace();
    const auto manager = adw_style_manager_get_default();
    if (state == "light") adw_style_manager_set_color_scheme(manager, ADW_COLOR_SCHEME_FORCE_LIGHT);
    if (state == "dark") adw_style_manager_set_color_scheme(manager, ADW_COLOR_SCHEME_FORCE_DARK);
    if (state == "theme") space->hue = Theme::withID(value)->hue;
    if (state == "shoot") picture = value;
    if (state == "empty") space->selectedTabID = std::nullopt;
    if (state == "narrow") gtk_window_set_default_size(window->native(), 640, 420);
    if (state == "contrast") window->view().add_css_class("high-contrast");
    if (state == "peek") {
      store.isSidebarVisible = false;
      store.isSidebarPeeking = true;
    }
    if (state == "toast")
      store.showToast("Closed 5 tabs", {.symbol = "xmark.circle", .undo = [] {}, .lasts = 60s});
    if (state == "loading") {
      sample.reading->isLoading = true;
      sample.reading->progress = 0.64;
    }
    if (state == "long") {
      space->name = std::string("A space whose name goes on and on");
      sample.reading->title = std::string("قراءة الماء: دليل ميداني لتيارات المد والجزر");
      sample.radio->title = std::string("Sub specie aeternitatis: notes on a very long title");
      sample.radio->isMuted = true;
    }
    if (state == "space") editNewSpace();
    if (state == "swipe") swipe();
    if (state == "main-menu") {
      later(500, [this] { window->view().sidebar().tools().toggleMainMenu(); });
      later(1000, [this] { openViewMenu(); });
    }
    if (state == "tab-menu") later(800, [this] { openTabMenu(); });
    if (state == "bar") {
      store.showCommandBar(CommandBarMode::NewTab);
      type(window->view().commandBar().field(), value);
    }
    if (state == "down")
      later(1200, [this, value] { window->view().commandBar().bar()->move(std::stoi(value)); });
    if (state == "find") {
      sample.world.view(sample.reading)->pageText = "slack";
      store.showFindBar();
      type(window->view().findBar().field(), value);
    }
    if (state == "settings") showSettings(value);
    if (state == "history") {
      showUtility(UtilityWindow::History);
      auto* content = window->utilityWindows().content(UtilityWindow::History);
      type(static_cast<HistoryContent*>(content)->field(), value);
    }
  }

  // Types once the field is on screen.
  void type(KeyTextField& field, const std::string& text) {
    if (text.empty()) return;
    later(600, [&field, text] {
      g_signal_emit_by_name(field.entry().gobj(), "insert-at-cursor", text.c_str());
    });
  }

  void editNewSpace() {
    auto& store = sample.store();
    store.beginNewSpace();
    const auto* theme = Theme::withID("sage");
    store.spaceDraft.update([theme](auto& draft) {
      draft->name = "Garden";
      draft->hue = theme->hue;
      draft->symbol = "leaf.fill";
    });
    store.previewTheme = *theme;
  }

  // The fingers lie still after two fifths of the way to the next space.
  void swipe() {
    auto& store = sample.store();
    const auto& next = store.spaces.peek()[1];
    for (const char* title : {"Sketches, week 21", "Type specimens", "Invoice 0114"}) {
      const auto tab =
          store.openTab(URL::parse("https://studio.example/"), {.in = next, .select = false});
      tab->title = std::string(title);
    }
    store.toast = std::nullopt;
    using Phase = ScrollEvent::Phase;
    store.scrollMonitor->handle({.phase = Phase::Began, .pointerX = 100});
    store.scrollMonitor->handle(
        {.phase = Phase::Changed, .deltaX = -0.4 * store.sidebarWidth.peek(), .pointerX = 100});
  }

  void openTabMenu() {
    auto& store = sample.store();
    const auto tab = store.activeSpace()->today.peek()[2];
    auto& list = window->view().sidebar().section().list();
    for (const auto& row : list.rows())
      if (row.key.kind == SidebarRow::Kind::Tab && row.tabs[0] == tab)
        presentMenu(*list.widgetFor(row.key), 140, 20, tabMenu(store, store.activeSpace(), tab));
  }

  void openViewMenu() {
    for (const auto& row : menuRows(GTK_WIDGET(window->native())))
      if (row.title == "View") g_signal_emit_by_name(row.widget, "clicked");
  }

  void showSettings(const std::string& page) {
    auto& store = sample.store();
    store.contentBlocker.togglePause(*URL::parse("https://strand-radio.example/"));
    store.settings.sitePermissions =
        Settings::SitePermissions{{"meet.example", {{"camera", true}, {"microphone", true}}},
                                  {"tidewater-almanac.example", {{"location", false}}}};
    const auto spaces = store.spaces.peek();
    store.settings.linkRoutes =
        std::vector<LinkRoute>{{.pattern = "fjord.example/courses", .spaceID = spaces[2]->id},
                               {.pattern = "", .spaceID = spaces[0]->id}};
    window->settings().show(page == "privacy" ? SettingsContent::Page::Privacy
                            : page == "links" ? SettingsContent::Page::Links
                                              : SettingsContent::Page::General);
    showUtility(UtilityWindow::Settings);
  }

  void showUtility(UtilityWindow which) {
    auto* native = window->utilityWindows().native(which);
    gtk_widget_remove_css_class(GTK_WIDGET(native), "solid-csd");
    sample.store().showUtilityWindow(which);
  }

  void shoot() {
    const auto& counters = window->view().sidebar().section().list().counters();
    std::cout << "rows built " << counters.built << ", bound " << counters.bound << '\n';
    const auto command = "import -window root '" + picture + "'";
    if (std::system(command.c_str()) != 0) std::cerr << "no picture\n";
    g_main_loop_quit(loop);
  }

  void run(const std::vector<std::string>& states) {
    for (const auto& state : states) prepare(state);
    sample.world.desktop.isMotionOn = true;
    sample.store().contentBlocker.isEnabled = true;
    window = std::make_unique<MainWindow>(nullptr, sample.store());
    sample.world.desktop.key = &window->desktopWindow();
    window->present();
    for (const auto& state : states) {
      const auto end = std::min(state.find('='), state.size());
      apply(state.substr(0, end), state.substr(std::min(end + 1, state.size())));
    }
    // The model's clock follows the real one.
    Glib::signal_timeout().connect(
        [this] {
          sample.world.scheduler.advance(std::chrono::milliseconds(kStep));
          sample.showPages();
          return true;
        },
        kStep);
    // Without a compositor the toolkit draws a frame around the window.
    gtk_widget_remove_css_class(GTK_WIDGET(window->native()), "solid-csd");
    if (!picture.empty()) later(3000, [this] { shoot(); });
    g_main_loop_run(loop);
    window.reset();
  }
};

}  // namespace

int main(int count, char** arguments) {
  adw_init();
  StyleSheet::load(std::filesystem::path(ORVEL_BUILD_DIR) / "share/orvel");
  Preview preview;
  g_object_set(gtk_settings_get_default(), "gtk-font-name", "Inter 10", nullptr);
  paintPages();
  preview.run({arguments + 1, arguments + count});
}
