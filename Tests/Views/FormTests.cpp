#include "Tests/Views/ShownWindow.h"
#include "Views/SettingsContent.h"
#include "Views/SidebarMenus.h"
#include "Views/UtilityWindows.h"

namespace orvel {
namespace {

using namespace test;

// What the user changes: spaces in their sheet, choices in the settings' window.
struct FormTest : ShownWindow {
  SpaceEditor& editor() { return *window->view().sheet().editor(); }

  // The widget below `root` that shows this text or tooltip; null without one.
  template <class Is>
  static GtkWidget* find(GtkWidget* root, Is is) {
    GtkWidget* found = nullptr;
    forEachWidget(root, [&](GtkWidget* one) {
      if (!found && is(one)) found = one;
    });
    return found;
  }
  static GtkWidget* withTooltip(GtkWidget* root, const char* text) {
    return find(root, [text](GtkWidget* one) {
      return g_strcmp0(gtk_widget_get_tooltip_text(one), text) == 0;
    });
  }
  static GtkWidget* button(GtkWidget* root, const char* label) {
    return find(root, [label](GtkWidget* one) {
      return GTK_IS_BUTTON(one) && g_strcmp0(gtk_button_get_label(GTK_BUTTON(one)), label) == 0;
    });
  }
  static void click(GtkWidget* widget) {
    ASSERT_NE(widget, nullptr);
    ASSERT_TRUE(gtk_widget_is_sensitive(widget));
    g_signal_emit_by_name(widget, "clicked");
  }
  static void turn(GtkWidget* root, const char* title) {
    auto* row = find(root, [title](GtkWidget* one) {
      return GTK_IS_LABEL(one) && g_strcmp0(gtk_label_get_text(GTK_LABEL(one)), title) == 0;
    });
    ASSERT_NE(row, nullptr) << title;
    row = gtk_widget_get_parent(gtk_widget_get_parent(row));
    auto* control = find(row, [](GtkWidget* one) { return GTK_IS_SWITCH(one); });
    ASSERT_NE(control, nullptr);
    gtk_switch_set_active(GTK_SWITCH(control), !gtk_switch_get_active(GTK_SWITCH(control)));
  }
};

TEST_F(FormTest, ASpaceIsMadeWithALivePreview) {
  store().beginNewSpace();
  settle();
  auto* root = GTK_WIDGET(window->native());
  EXPECT_TRUE(editor().name().get_mapped());
  // The keyboard stays in the sheet.
  auto* focus = gtk_window_get_focus(window->native());
  ASSERT_NE(focus, nullptr);
  EXPECT_TRUE(gtk_widget_is_ancestor(focus, editor().Gtk::Widget::gobj()));
  EXPECT_FALSE(window->view().sidebar().child_focus(Gtk::DirectionType::TAB_FORWARD));
  editor().name().set_text("  ");
  EXPECT_FALSE(editor().commitButton().get_sensitive());
  g_signal_emit_by_name(editor().name().gobj(), "activate");
  EXPECT_TRUE(store().spaceDraft.peek());

  editor().name().set_text(" Orchard ");
  click(withTooltip(root, "Navy"));
  click(withTooltip(root, "Star"));
  click(button(root, "Dark"));
  settle();
  EXPECT_EQ(store().previewTheme.peek()->id, "navy");
  EXPECT_EQ(store().previewAppearance.peek(), Space::Appearance::Dark);
  const auto count = store().spaces.peek().size();
  g_signal_emit_by_name(editor().name().gobj(), "activate");
  settle();
  ASSERT_EQ(store().spaces.peek().size(), count + 1);
  const auto& made = *store().spaces.peek().back();
  EXPECT_EQ(made.name.peek(), "Orchard");
  EXPECT_EQ(made.hue.peek(), Theme::withID("navy")->hue);
  EXPECT_EQ(made.symbol.peek(), "star.fill");
  EXPECT_EQ(made.appearance.peek(), Space::Appearance::Dark);
  EXPECT_NE(made.profile, store().spaces.peek().front()->profile);
  EXPECT_EQ(store().activeSpaceID(), made.id);
  EXPECT_EQ(store().previewTheme.peek(), std::nullopt);
  EXPECT_TRUE(runUntil([&] { return !window->view().sheet().get_mapped(); }));
}

TEST_F(FormTest, EscapeLeavesTheSpaceAsItWas) {
  const auto space = store().activeSpace();
  const double hue = space->hue.peek();
  store().beginEditing(*space);
  settle();
  editor().name().set_text("Never");
  click(withTooltip(GTK_WIDGET(window->native()), "Heather"));
  EXPECT_TRUE(pressKey(window->view().sheet().Gtk::Widget::gobj(), GDK_KEY_Escape));
  settle();
  EXPECT_EQ(store().spaceDraft.peek(), std::nullopt);
  EXPECT_EQ(store().previewTheme.peek(), std::nullopt);
  EXPECT_EQ(space->name.peek(), "Personal");
  EXPECT_EQ(space->hue.peek(), hue);
  EXPECT_TRUE(window->view().sidebar().get_can_focus());
}

TEST_F(FormTest, DeletingASpaceAsksAndWarnsOfWhatGoes) {
  const auto space = store().spaces.peek().back();
  auto& desktop = sample.world.desktop;
  const auto ask = [&](size_t answer) {
    desktop.answerAlert = [answer](const Alert&) { return AlertAnswer{.button = answer}; };
    const auto menu = spaceMenu(store(), space);
    EXPECT_EQ(menu.back().title, "Delete Space…");
    menu.back().perform();
    settle();
  };
  ask(1);
  EXPECT_EQ(desktop.alerts.back().alert.informativeText,
            "Its pinned and today tabs will be removed. Logins stay with the spaces that share its "
            "profile.");
  EXPECT_EQ(store().spaces.peek().size(), 4u);
  ask(0);
  EXPECT_EQ(store().spaces.peek().size(), 3u);
  store().spaces = {store().spaces.peek().front()};
  EXPECT_FALSE(spaceMenu(store(), store().spaces.peek().front()).back().perform);
}

TEST_F(FormTest, TheShieldPausesAndResumes) {
  auto* root = GTK_WIDGET(window->native());
  const auto url = sample.reading->url.peek();
  click(withTooltip(root, "Pause blocking on this site"));
  settle();
  EXPECT_TRUE(store().contentBlocker.isPaused(url));
  click(withTooltip(root, "Blocking paused on this site. Click to resume."));
  settle();
  EXPECT_FALSE(store().contentBlocker.isPaused(url));
}

TEST_F(FormTest, SettingsFollowAndWriteTheModel) {
  store().showUtilityWindow(UtilityWindow::Settings);
  settle();
  auto& settings = store().settings;
  auto* root = GTK_WIDGET(window->utilityWindows().native(UtilityWindow::Settings));
  EXPECT_TRUE(gtk_widget_get_mapped(root));

  settings.searchEngine = SearchEngine(SearchEngine::duckDuckGo);
  settle();
  turn(root, "Show DuckDuckGo suggestions");
  EXPECT_TRUE(settings.searchSuggestions.peek());
  settings.searchEngine = SearchEngine(SearchEngine::startpage);
  settle();
  EXPECT_FALSE(settings.searchSuggestions.peek());
  turn(root, "Picture in picture when leaving a playing video");
  EXPECT_FALSE(settings.autoPictureInPicture.peek());
  auto& blocker = store().contentBlocker;
  const bool wasBlocking = blocker.isEnabled.peek();
  turn(root, "Block ads and trackers");
  EXPECT_NE(blocker.isEnabled.peek(), wasBlocking);
  turn(root, "Reject cookie pop-ups automatically");
  EXPECT_FALSE(blocker.isCookieRejectionEnabled.peek());

  // A row that is typed in stays while what it says is written.
  EXPECT_FALSE(gtk_widget_is_sensitive(button(root, "Restore Defaults")));
  click(button(root, "Add Shortcut"));
  settle();
  const auto count = settings.searchShortcuts.peek().size();
  EXPECT_EQ(count, SearchShortcut::builtIn().size() + 1);
  GtkWidget* keyword = nullptr;
  forEachWidget(root, [&](GtkWidget* one) {
    if (GTK_IS_ENTRY(one) && gtk_widget_has_css_class(one, "mono")) keyword = one;
  });
  ASSERT_NE(keyword, nullptr);
  for (const char* text : {"t", "ti"}) {
    gtk_editable_set_text(GTK_EDITABLE(keyword), text);
    settle();
  }
  EXPECT_EQ(settings.searchShortcuts.peek().back().keyword, "ti");
  click(button(root, "Restore Defaults"));
  settle();
  EXPECT_EQ(settings.searchShortcuts.peek(), SearchShortcut::builtIn());
}

TEST_F(FormTest, SitesAndRulesAreListedAndRemoved) {
  auto& settings = store().settings;
  settings.sitePermissions =
      Settings::SitePermissions{{"meet.example", {{"microphone", false}, {"camera", true}}}};
  store().contentBlocker.togglePause(*URL::parse("https://loud.example/"));
  auto* root = GTK_WIDGET(window->utilityWindows().native(UtilityWindow::Settings));
  window->settings().show(SettingsContent::Page::Privacy);
  store().showUtilityWindow(UtilityWindow::Settings);
  settle();
  EXPECT_NE(find(root,
                 [](GtkWidget* one) {
                   return GTK_IS_LABEL(one) && g_strcmp0(gtk_label_get_text(GTK_LABEL(one)),
                                                         "Camera allowed, Microphone blocked") == 0;
                 }),
            nullptr);
  click(button(root, "Forget"));
  click(button(root, "Resume"));
  settle();
  EXPECT_TRUE(settings.sitePermissions.peek().empty());
  EXPECT_TRUE(store().contentBlocker.pausedSites.peek().empty());
  EXPECT_EQ(button(root, "Forget"), nullptr);
  click(button(root, "Clear History…"));
  settle();
  EXPECT_EQ(sample.world.desktop.alerts.back().alert.messageText, "Clear all browsing history?");

  window->settings().show(SettingsContent::Page::Links);
  settle();
  click(button(root, "Add Rule"));
  settle();
  ASSERT_EQ(settings.linkRoutes.peek().size(), 1u);
  EXPECT_EQ(settings.linkRoutes.peek().front().spaceID, store().activeSpaceID());
  auto* site = find(root, [](GtkWidget* one) {
    return GTK_IS_ENTRY(one) && gtk_widget_has_css_class(one, "field");
  });
  ASSERT_NE(site, nullptr);
  gtk_editable_set_text(GTK_EDITABLE(site), "fjord.example/courses");
  settle();
  EXPECT_EQ(settings.linkRoutes.peek().front().pattern, "fjord.example/courses");
  click(withTooltip(root, "Remove Rule"));
  settle();
  EXPECT_TRUE(settings.linkRoutes.peek().empty());
}

}  // namespace
}  // namespace orvel
