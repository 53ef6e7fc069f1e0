// Shows the main window over a sample session, for looking at and for pictures.
//
//   view-preview [light|dark] [empty|long|loading|contrast|toast|peek|hidden|narrow|edit|rtl|menu|
//                paused|main-menu|bar|bar-current|bar=TEXT|down=ROWS|space|space-edit|swipe|towel|
//                large=SCALE|spaces=MORE|tab-menu|submenu-menu|folder-menu|space-menu|settings=PAGE|
//                find=TEXT|history|history=TEXT|no-history]
//                [theme=NAME] [many] [shoot=FILE]

#include <adwaita.h>
#include <glibmm/main.h>

#include <iostream>

#include "DesignSystem/StyleSheet.h"
#include "Models/Settings/Settings.h"
#include "Models/Sidebar/Folders.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwipe.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageSearch.h"
#include "Models/Windows/Toasts.h"
#include "Models/Windows/WindowChrome.h"
#include "Tests/Kit/Publish.h"
#include "Tests/Views/SampleStore.h"
#include "Tests/Views/ViewTest.h"
#include "Views/History/HistoryContent.h"
#include "Views/Settings/SettingsContent.h"
#include "Views/Sidebar/SidebarMenus.h"
#include "Views/Window/BrowserView.h"
#include "Views/Window/MainWindow.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace {

using namespace orvel;
using namespace orvel::test;

constexpr unsigned kStep = 10;  // milliseconds

// Pages are guests: their ground is their own.
void paintPages() {
  auto* provider = gtk_css_provider_new();
  gtk_css_provider_load_from_data(
      provider,
      ".sample-page { background: white; color: #1c2427; padding: 48px; font-size: 12pt; }"
      ".scheme-dark .sample-page { background: #15181b; color: #e6e9ea; }",
      -1);
  gtk_style_context_add_provider_for_display(gdk_display_get_default(),
                                             GTK_STYLE_PROVIDER(provider),
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  g_object_unref(provider);
}

struct Preview {
  SampleStore sample;
  std::unique_ptr<MainWindow> window;
  std::string picture;
  std::string typed;
  std::string sought;  // what the find bar or the history window is asked for
  int down = 0;
  GMainLoop* loop = g_main_loop_new(nullptr, FALSE);

  void apply(const std::string& state) {
    auto& store = sample.store();
    const auto& space = store.activeSpace();
    const auto manager = adw_style_manager_get_default();
    if (state == "light") adw_style_manager_set_color_scheme(manager, ADW_COLOR_SCHEME_FORCE_LIGHT);
    if (state == "dark") adw_style_manager_set_color_scheme(manager, ADW_COLOR_SCHEME_FORCE_DARK);
    if (state == "empty") space->selectedTabID = std::nullopt;
    if (state == "narrow") gtk_window_set_default_size(window->native(), 640, 420);
    if (state == "peek" || state == "hidden") test::publish(store.chrome.isSidebarVisible, false);
    if (state == "peek") test::publish(store.chrome.isSidebarPeeking, true);
    if (state == "rtl") gtk_widget_set_default_direction(GTK_TEXT_DIR_RTL);
    if (state == "contrast") window->view().add_css_class("high-contrast");
    if (state.starts_with("large="))
      g_object_set(gtk_settings_get_default(), "gtk-xft-dpi",
                   std::lround(std::stod(state.substr(6)) * 96 * 1024), nullptr);
    if (state == "bar" || state.starts_with("bar=")) store.showCommandBar(CommandBarMode::NewTab);
    if (state == "bar-current") store.showCommandBar(CommandBarMode::CurrentTab);
    if (state.starts_with("bar=")) typed = state.substr(4);
    if (state.starts_with("down=")) down = std::stoi(state.substr(5));
    if (state.starts_with("find=")) {
      sample.world.view(sample.reading)->pageText = "slack";
      store.pageSearch.showFindBar();
      sought = state.substr(5);
    }
    if (state == "no-history") store.history->removeAll(std::nullopt);
    if (state.starts_with("history=")) sought = state.substr(8);
    if (state == "paused") store.contentBlocker.togglePause(*sample.reading->url.peek());
    if (state == "space") {
      store.spaceEditing.beginNewSpace();
      const auto* theme = Theme::withID("sage");
      auto draft = store.spaceEditing.spaceDraft.peek();
      draft->name = "Garden";
      draft->hue = theme->hue;
      draft->symbol = "leaf.fill";
      test::publish(store.spaceEditing.spaceDraft, draft);
      test::publish(store.spaceEditing.previewTheme, *theme);
    }
    if (state == "space-edit") store.spaceEditing.beginEditing(*space);
    if (state == "toast")
      store.showToast("Closed 5 tabs", {.symbol = "xmark.circle", .undo = [] {}, .lasts = 60s});
    if (state == "loading") {
      test::publish(sample.reading->isLoading, true);
      test::publish(sample.reading->progress, 0.64);
    }
    if (state == "long") {
      space->name = std::string("A space whose name goes on and on");
      sample.reading->title = std::string("قراءة الماء: دليل ميداني لتيارات المد والجزر");
      sample.radio->title = std::string("Sub specie aeternitatis: notes on a very long title");
      sample.radio->isMuted = true;
    }
    if (state == "menu")
      test::publish(store.folders.renamingFolderID, foldersOf(space->pinned).front()->id);
    if (state == "swipe") swipe();
    if (state == "many")
      for (int i = 0; i < 300; ++i)
        sample.world.open("https://page" + std::to_string(i) + ".example/", false);
    if (state.starts_with("spaces=")) {
      auto spaces = store.spaces.peek();
      for (int i = 0; i < std::stoi(state.substr(7)); ++i)
        spaces.push_back(std::make_shared<Space>(UUID::random(), space->profile, "More",
                                                 std::string(kSpaceSymbols[i % 12].symbol), 0.3));
      store.setSpaces(spaces);
    }
    if (state.starts_with("theme="))
      if (const auto* theme = Theme::withID(state.substr(6))) space->hue = theme->hue;
    if (state.starts_with("shoot=")) picture = state.substr(6);
  }

  // Types into the command bar once it is on screen, and moves down in its list.
  void typeIntoBar() {
    auto& bar = window->view().commandBar();
    if (!typed.empty())
      g_signal_emit_by_name(bar.field().entry().gobj(), "insert-at-cursor", typed.c_str());
    Glib::signal_timeout().connect_once([this, &bar] { bar.bar()->move(down); }, 600);
  }

  void typeLater(KeyTextField& field) {
    Glib::signal_timeout().connect_once(
        [this, &field] {
          g_signal_emit_by_name(field.entry().gobj(), "insert-at-cursor", sought.c_str());
        },
        600);
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
    test::publish(store.toasts.toast, std::nullopt);
    using Phase = ScrollEvent::Phase;
    auto& events = sample.world.desktop.events;
    events.offer(*store.window(), ScrollEvent{.phase = Phase::Began, .pointerX = 100});
    events.offer(*store.window(), ScrollEvent{.phase = Phase::Changed,
                                              .deltaX = -0.4 * store.chrome.sidebarWidth.peek(),
                                              .pointerX = 100});
  }

  void openMenu(const std::string& name) {
    auto& store = sample.store();
    const auto& space = store.activeSpace();
    auto& list = window->view().sidebar().section().list();
    const auto tab = space->today.peek()[2];
    const auto folder = foldersOf(space->pinned).front();
    auto entries = name == "folder-menu"  ? folderMenu(store, folder)
                   : name == "space-menu" ? spaceMenu(store, space)
                                          : tabMenu(store, space, tab);
    if (name == "submenu-menu") entries = std::vector(entries[2].submenu);
    for (const auto& row : list.rows())
      if (row.folder == folder || (row.key.kind == SidebarRow::Kind::Tab && row.tabs[0] == tab))
        if (auto* widget = list.widgetFor(row.key);
            (name == "folder-menu") == (row.folder != nullptr))
          return presentMenu(*widget, 140, 20, std::move(entries));
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

  void visitMuch() {
    auto& store = sample.store();
    const struct {
      const char* url;
      const char* title;
      Duration ago;
    } visits[] = {
        {"https://tidewater-almanac.example/guide", "Reading the water: a field guide", 3min},
        {"https://slowtable.example/rye", "", 3h},
        {"https://encyclia.example/wiki/Celestial_navigation",
         "Celestial navigation: history, instruments, and the working of a sight from the deck of "
         "a small boat",
         25h},
        {"https://madd.example/", "قراءة الماء: دليل ميداني لتيارات المد والجزر", 50h},
        {"https://a.very.long.name.of.a.site.that.goes.on.and.on.example/", "Tides", 51h}};
    for (const auto& [url, title, ago] : visits)
      store.history->recordVisit(store.activeSpace()->profile->id, *URL::parse(url), title,
                                 store.services().scheduler.now() - ago);
  }

  void showUtility(UtilityWindow which) {
    auto* native = window->utilityWindows().native(which);
    gtk_widget_remove_css_class(GTK_WIDGET(native), "solid-csd");
    sample.store().showUtilityWindow(which);
  }

  void openViewMenu() {
    for (const auto& row : menuRows(GTK_WIDGET(window->native())))
      if (row.title == "View") g_signal_emit_by_name(row.widget, "clicked");
  }

  void run(const std::vector<std::string>& states) {
    for (const auto& state : states) {
      if (state == "rtl" || state.starts_with("large=")) apply(state);
      using namespace std::chrono;
      if (state == "towel") sample.world.scheduler.setDate(sys_days(2026y / May / 25) + hours(12));
    }
    sample.world.desktop.isMotionOn = true;
    sample.store().contentBlocker.isEnabled = true;
    window = std::make_unique<MainWindow>(nullptr, sample.store());
    sample.world.desktop.active = &window->desktopWindow();
    for (const auto& state : states) apply(state);
    // The model's clock follows the real one.
    Glib::signal_timeout().connect(
        [this] {
          sample.world.scheduler.advance(std::chrono::milliseconds(kStep));
          sample.showPages();
          return true;
        },
        kStep);
    window->present();
    for (const auto& state : states)
      if (state == "main-menu") {
        Glib::signal_timeout().connect_once(
            [this] { window->view().sidebar().tools().toggleMainMenu(); }, 500);
        Glib::signal_timeout().connect_once([this] { openViewMenu(); }, 1000);
      }
    for (const auto& state : states)
      if (state.starts_with("settings=")) {
        showSettings(state.substr(9));
      } else if (state == "history" || state == "no-history" || state.starts_with("history=")) {
        if (state != "no-history") visitMuch();
        showUtility(UtilityWindow::History);
        auto* content = window->utilityWindows().content(UtilityWindow::History);
        typeLater(static_cast<HistoryContent*>(content)->field());
      }
    if (sample.store().pageSearch.find.peek()) typeLater(window->view().findBar().field());
    if (sample.store().commandBar.peek())
      Glib::signal_timeout().connect_once([this] { typeIntoBar(); }, 600);
    Glib::signal_timeout().connect_once(
        [this, states] {
          for (const auto& state : states)
            if (state.ends_with("-menu") && state != "main-menu") openMenu(state);
        },
        800);
    // Without a compositor the toolkit draws a frame around the window.
    gtk_widget_remove_css_class(GTK_WIDGET(window->native()), "solid-csd");
    if (!picture.empty())
      Glib::signal_timeout().connect_once(
          [this] {
            const auto& counters = window->view().sidebar().section().list().counters();
            std::cout << "rows built " << counters.built << ", bound " << counters.bound << '\n';
            const auto command = "import -window root '" + picture + "'";
            if (std::system(command.c_str()) != 0) std::cerr << "no picture\n";
            g_main_loop_quit(loop);
          },
          3000);
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
