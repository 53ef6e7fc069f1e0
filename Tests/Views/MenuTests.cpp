#include "Base/GRef.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Windows/WindowChrome.h"
#include "Tests/Kit/Publish.h"
#include "Tests/Views/ShownWindow.h"
#include "Views/Window/UtilityWindows.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel::test {
namespace {

struct MenuViewTest : ShownWindow {
  // Presses what the catalog lists for the action; returns whether the window took it. The
  // toolkit lists a global shortcut twice.
  bool press(ActionID action) { return press(root(), action); }
  bool press(GtkWidget* root, ActionID action) {
    const auto wanted = GRef<GtkShortcutTrigger>::adopt(
        gtk_shortcut_trigger_parse_string(std::string(actionInfo(action).keys).c_str()));
    bool isTaken = false;
    forEachController(root, [&](GtkEventController* controller) {
      if (!GTK_IS_SHORTCUT_CONTROLLER(controller)) return;
      auto* shortcuts = G_LIST_MODEL(controller);
      for (guint n = 0; n < g_list_model_get_n_items(shortcuts) && !isTaken; ++n) {
        const auto shortcut =
            GRef<GtkShortcut>::adopt(GTK_SHORTCUT(g_list_model_get_item(shortcuts, n)));
        if (gtk_shortcut_trigger_equal(gtk_shortcut_get_trigger(shortcut.get()), wanted.get()))
          isTaken =
              gtk_shortcut_action_activate(gtk_shortcut_get_action(shortcut.get()),
                                           GTK_SHORTCUT_ACTION_EXCLUSIVE, root, nullptr) != FALSE;
      }
    });
    settle();
    return isTaken;
  }
  MenuRow row(const std::string& title) {
    for (const auto& one : menuRows(root()))
      if (one.title == title) return one;
    return {};
  }
  static bool isMarked(const MenuRow& row) {
    gboolean isActive = FALSE;
    g_object_get(row.widget, "active", &isActive, nullptr);
    return isActive != FALSE;
  }
};

TEST_F(MenuViewTest, TheToolkitKnowsEveryKeyOfTheCatalog) {
  for (const ActionInfo& action : actionCatalog()) {
    std::string_view rest = action.keys;
    while (!rest.empty()) {
      const std::string key(rest.substr(0, rest.find('|')));
      guint code = 0;
      GdkModifierType modifiers{};
      EXPECT_TRUE(gtk_accelerator_parse(key.c_str(), &code, &modifiers) && code) << key;
      rest.remove_prefix(std::min(rest.size(), key.size() + 1));
    }
  }
}

TEST_F(MenuViewTest, TheMenuShowsTheStoresOwn) {
  store().contentBlocker.togglePause(*sample.reading->url.peek());
  store().spaces.peek()[2]->name = std::string("Tide_log");
  EXPECT_TRUE(press(ActionID::MainMenu));
  EXPECT_EQ(row("Copy as Markdown Link").keys, "Ctrl+Alt+Shift+C");
  EXPECT_EQ(row("Quit Orvel").keys, "Ctrl+Q");
  EXPECT_EQ(row("Studio").keys, "Alt+2");
  EXPECT_EQ(row("Tide_log").keys, "Alt+3");
  EXPECT_EQ(row("Select Tab 1").widget, nullptr) << "only its keys are there";
  EXPECT_TRUE(isMarked(row("Pause Blocking on This Site")));
  EXPECT_TRUE(isMarked(row("Personal")));
  EXPECT_FALSE(isMarked(row("Studio")));

  // Its choices act, once the menu has closed.
  click(row("Studio").widget);
  EXPECT_EQ(space().name.peek(), "Studio");
  EXPECT_TRUE(runUntil([this] { return menuRows(root()).empty(); }));
}

TEST_F(MenuViewTest, TheMenuOfARowHasTheKeysToItself) {
  auto& list = window->view().sidebar().section().list();
  gtk_widget_child_focus(list.Gtk::Widget::gobj(), GTK_DIR_TAB_FORWARD);
  ASSERT_TRUE(pressKey(list.Gtk::Widget::gobj(), GDK_KEY_End));
  ASSERT_TRUE(pressKey(list.Gtk::Widget::gobj(), GDK_KEY_Up));
  auto* row = focus();
  ASSERT_TRUE(pressKey(row, GDK_KEY_Menu));
  settle();
  auto* inMenu = focus();
  ASSERT_NE(inMenu, row);
  ASSERT_TRUE(gtk_widget_is_ancestor(inMenu, row));
  for (const guint key : {GDK_KEY_Down, GDK_KEY_Up, GDK_KEY_End}) {
    EXPECT_FALSE(pressKey(list.Gtk::Widget::gobj(), key));
    EXPECT_FALSE(pressKey(row, key));
    EXPECT_EQ(focus(), inMenu);
  }
}

TEST_F(MenuViewTest, AHiddenSidebarStaysSoAndHidesNoMenu) {
  store().chrome.toggleSidebar();
  settle();
  EXPECT_TRUE(runUntil([this] { return !window->view().sidebar().get_mapped(); }));
  EXPECT_TRUE(press(ActionID::MainMenu));
  EXPECT_TRUE(gtk_widget_get_mapped(row("File").widget));
  EXPECT_TRUE(press(ActionID::MainMenu)) << "the same key closes it";
  EXPECT_TRUE(runUntil([this] { return menuRows(root()).empty(); }));
  EXPECT_TRUE(press(ActionID::NewTab));
  EXPECT_TRUE(window->view().commandBar().field().entry().has_focus());
  EXPECT_FALSE(window->view().sidebar().get_mapped());
}

TEST_F(MenuViewTest, ASheetKeepsTheKeysForItself) {
  store().spaceEditing.beginNewSpace();
  settle();
  EXPECT_FALSE(press(ActionID::ToggleSidebar));
  EXPECT_FALSE(press(ActionID::MainMenu));
  EXPECT_TRUE(store().chrome.isSidebarVisible.peek());
  // Another window's keys are the same store's.
  store().showUtilityWindow(UtilityWindow::History);
  settle();
  auto* history = GTK_WIDGET(window->utilityWindows().native(UtilityWindow::History));
  const auto draft = store().spaceEditing.spaceDraft.peek()->id;
  for (const auto action : {ActionID::NewSpace, ActionID::NewTab, ActionID::ToggleSidebar})
    EXPECT_FALSE(press(history, action));
  EXPECT_EQ(store().spaceEditing.spaceDraft.peek()->id, draft);
  EXPECT_EQ(store().commandBar.peek(), std::nullopt);
  EXPECT_TRUE(press(history, ActionID::CloseTab));
  // What ends the program stays.
  EXPECT_TRUE(press(ActionID::Quit));
  EXPECT_EQ(sample.world.desktop.terminateCount, 1);
  publish(store().spaceEditing.spaceDraft, std::nullopt);
  settle();
  EXPECT_TRUE(press(ActionID::ToggleSidebar));
  EXPECT_FALSE(store().chrome.isSidebarVisible.peek());
  EXPECT_FALSE(press(ActionID::Copy)) << "it is the page's";
}

TEST_F(MenuViewTest, UtilityWindowsAreKeptAndRememberTheirSize) {
  auto& windows = window->utilityWindows();
  store().showUtilityWindow(UtilityWindow::History);
  settle();
  auto* native = windows.native(UtilityWindow::History);
  EXPECT_TRUE(gtk_widget_get_mapped(GTK_WIDGET(native)));
  gtk_window_set_default_size(native, 700, 500);
  settle();
  EXPECT_THAT(sample.world.defaults.list("OrvelHistoryWindow").value_or(UserDefaults::List()),
              ElementsAre("700", "500", ""));
  auto* content = windows.content(UtilityWindow::History);
  gtk_window_close(native);
  settle();
  // A hidden window is one that a screen reader's question ends the program by.
  EXPECT_EQ(g_list_model_get_n_items(gtk_window_get_toplevels()), 1u);
  store().showUtilityWindow(UtilityWindow::History);
  settle();
  native = windows.native(UtilityWindow::History);
  EXPECT_TRUE(gtk_widget_get_mapped(GTK_WIDGET(native)));
  int width = 0;
  int height = 0;
  gtk_window_get_default_size(native, &width, &height);
  EXPECT_EQ(width, 700);
  EXPECT_EQ(windows.content(UtilityWindow::History), content);
  EXPECT_FALSE(gtk_window_get_resizable(windows.native(UtilityWindow::Settings)));
}

}  // namespace
}  // namespace orvel::test
