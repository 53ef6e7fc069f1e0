#include "Base/GRef.h"
#include "Models/Settings/Settings.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Store/BrowserStore.h"
#include "Tests/Views/ShownWindow.h"
#include "Views/Settings/SettingsContent.h"
#include "Views/Window/UtilityWindows.h"
#include "WebEngine/Blocking/ContentBlocker.h"

namespace orvel::test {
namespace {

// What the user changes: spaces in their sheet, choices in the settings' window.
struct FormTest : ShownWindow {
  SpaceEditor& editor() { return *window->view().sheet().editor(); }

  // The switch of the row with this title; null without one.
  static GtkWidget* controlOf(GtkWidget* root, const char* title) {
    auto* label = labelOf(root, title);
    if (!label) return nullptr;
    auto* row = gtk_widget_get_parent(gtk_widget_get_parent(label));
    return findWidget(row, [](GtkWidget* one) { return GTK_IS_SWITCH(one); });
  }
  // Types into the last entry on screen of this style class.
  void enterLast(GtkWidget* root, const char* style, const char* text) {
    GtkWidget* entry = nullptr;
    forEachWidget(root, [&](GtkWidget* one) {
      if (GTK_IS_ENTRY(one) && gtk_widget_get_mapped(one) && gtk_widget_has_css_class(one, style))
        entry = one;
    });
    ASSERT_NE(entry, nullptr);
    gtk_editable_set_text(GTK_EDITABLE(entry), text);
    settle();
  }
  // The settings' window, on screen.
  GtkWidget* showSettings() {
    store().showUtilityWindow(UtilityWindow::Settings);
    settle();
    return GTK_WIDGET(window->utilityWindows().native(UtilityWindow::Settings));
  }
};

TEST_F(FormTest, ASpaceIsMadeWithALivePreview) {
  store().spaceEditing.beginNewSpace();
  settle();
  EXPECT_TRUE(editor().name().get_mapped());
  // The keyboard stays in the sheet.
  ASSERT_NE(focus(), nullptr);
  EXPECT_TRUE(gtk_widget_is_ancestor(focus(), editor().Gtk::Widget::gobj()));
  EXPECT_FALSE(window->view().sidebar().child_focus(Gtk::DirectionType::TAB_FORWARD));
  // The window's own buttons stay in reach, and nothing else below the sheet.
  const auto picked = [this](GtkWidget* widget) {
    auto& view = window->view();
    graphene_rect_t bounds;
    EXPECT_TRUE(gtk_widget_compute_bounds(widget, view.gobj(), &bounds));
    auto* at = gtk_widget_pick(view.gobj(), bounds.origin.x + bounds.size.width / 2,
                               bounds.origin.y + bounds.size.height / 2, GTK_PICK_DEFAULT);
    return at && (at == widget || gtk_widget_is_ancestor(at, widget));
  };
  for (GtkWidget* button : window->view().sidebar().topBar().windowButtons())
    EXPECT_TRUE(picked(button));
  EXPECT_FALSE(picked(withTooltip(root(), "Toggle Sidebar (Ctrl+S)")));
  editor().name().set_text("  ");
  g_signal_emit_by_name(editor().name().gobj(), "activate");
  EXPECT_TRUE(store().spaceEditing.spaceDraft.peek()) << "a space has a name";
  editor().name().set_text(" Orchard ");
  click(withTooltip(root(), "Navy"));
  click(withTooltip(root(), "Star"));
  click(buttonOf(root(), "Dark"));
  EXPECT_EQ(store().spaceEditing.previewTheme.peek()->id, "navy");
  g_signal_emit_by_name(editor().name().gobj(), "activate");
  settle();
  EXPECT_EQ(store().spaces.peek().back()->name.peek(), "Orchard");
  EXPECT_EQ(store().spaces.peek().back()->appearance.peek(), Space::Appearance::Dark);
  EXPECT_TRUE(runUntil([&] { return !window->view().sheet().get_mapped(); }));
}

TEST_F(FormTest, SettingsPromiseNothingThatIsNotThere) {
  auto* form = showSettings();
  auto* picture = controlOf(form, "Picture in picture when leaving a playing video");
  ASSERT_NE(picture, nullptr);
  EXPECT_FALSE(gtk_switch_get_active(GTK_SWITCH(picture)));
  EXPECT_FALSE(gtk_widget_is_sensitive(picture));
  EXPECT_TRUE(labelOf(form, "Picture in picture isn’t available yet."));
  EXPECT_TRUE(store().settings.autoPictureInPicture.peek()) << "the choice is kept for then";

  constexpr const char* kRefused = "The desktop didn’t take Orvel: it isn’t installed.";
  sample.world.desktop.isInstalled = false;
  click(buttonOf(form, "Make Default"));
  EXPECT_TRUE(labelOf(form, kRefused));
  sample.world.desktop.isInstalled = true;
  click(buttonOf(form, "Make Default"));
  EXPECT_FALSE(labelOf(form, kRefused));
  EXPECT_TRUE(labelOf(form, "Orvel is your default browser"));
}

TEST_F(FormTest, ChoicesAreOneStopWithArrowsInside) {
  store().spaceEditing.beginNewSpace();
  auto* form = showSettings();
  const struct {
    GtkWidget* root;
    GtkWidget* chosen;
    const char* next;
    GtkAccessibleRole group;
    GtkAccessibleRole role;
  } rows[] = {
      {root(), buttonOf(root(), "Automatic"), "Light", GTK_ACCESSIBLE_ROLE_RADIO_GROUP,
       GTK_ACCESSIBLE_ROLE_RADIO},
      {form, buttonOf(form, "General"), "Privacy", GTK_ACCESSIBLE_ROLE_TAB_LIST,
       GTK_ACCESSIBLE_ROLE_TAB},
  };
  for (const auto& row : rows) {
    auto* group = gtk_widget_get_parent(row.chosen);
    EXPECT_EQ(gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(group)), row.group);
    EXPECT_EQ(gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(row.chosen)), row.role);
    const auto stops = [&] {
      std::vector<GtkWidget*> found;
      forEachWidget(group, [&](GtkWidget* one) {
        if (GTK_IS_TOGGLE_BUTTON(one) && gtk_widget_get_focusable(one)) found.push_back(one);
      });
      return found;
    };
    EXPECT_THAT(stops(), ElementsAre(row.chosen));
    gtk_widget_grab_focus(row.chosen);
    EXPECT_TRUE(pressKey(group, GDK_KEY_Right));
    settle();
    auto* next = buttonOf(row.root, row.next);
    EXPECT_TRUE(gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(next)));
    EXPECT_EQ(gtk_window_get_focus(GTK_WINDOW(gtk_widget_get_root(next))), next);
    EXPECT_THAT(stops(), ElementsAre(next));
    EXPECT_TRUE(pressKey(group, GDK_KEY_Home));
    EXPECT_FALSE(pressKey(group, GDK_KEY_Tab));
  }
}

TEST_F(FormTest, ListsKeepTheKeyboard) {
  auto& settings = store().settings;
  auto* form = showSettings();
  const auto focusIn = [form] { return gtk_window_get_focus(GTK_WINDOW(form)); };
  const auto isInView = [&](GtkWidget* widget) {
    auto* scroller = gtk_widget_get_ancestor(widget, GTK_TYPE_SCROLLED_WINDOW);
    const float y = placeIn(scroller, widget).y;
    return y >= 0 && y < gtk_widget_get_height(scroller);
  };
  // A new row takes it, in view.
  click(buttonOf(form, "Add Shortcut"));
  ASSERT_TRUE(runUntil([&] { return focusIn() && GTK_IS_TEXT(focusIn()); }));
  EXPECT_TRUE(runUntil([&] { return isInView(focusIn()); }));
  g_signal_emit_by_name(focusIn(), "insert-at-cursor", "ti");
  settle();
  EXPECT_EQ(settings.searchShortcuts.peek().back().keyword, "ti");
  // A row keeps it while another goes or comes.
  auto* typed = focusIn();
  settings.searchShortcuts.update([](auto& list) { list.erase(list.begin()); });
  settle();
  EXPECT_EQ(focusIn(), typed);
  EXPECT_TRUE(gtk_widget_get_mapped(typed));
  // Of a row that goes the neighbor has it next.
  click(findWidget(gtk_widget_get_ancestor(typed, GTK_TYPE_BOX), [](GtkWidget* one) {
    return g_strcmp0(gtk_widget_get_tooltip_text(one), "Remove Shortcut") == 0;
  }));
  ASSERT_NE(focusIn(), nullptr);
  EXPECT_TRUE(gtk_widget_get_mapped(focusIn()));
}

TEST_F(FormTest, SitesAndRulesAreListedAndRemoved) {
  auto& settings = store().settings;
  settings.sitePermissions =
      Settings::SitePermissions{{"meet.example", {{"microphone", false}, {"camera", true}}}};
  store().contentBlocker.togglePause(*URL::parse("https://loud.example/"));
  window->settings().show(SettingsContent::Page::Privacy);
  auto* form = showSettings();
  EXPECT_TRUE(labelOf(form, "Camera allowed, Microphone blocked"));
  click(buttonOf(form, "Forget"));
  click(buttonOf(form, "Resume"));
  EXPECT_TRUE(settings.sitePermissions.peek().empty());
  EXPECT_TRUE(store().contentBlocker.pausedSites.peek().empty());

  window->settings().show(SettingsContent::Page::Links);
  settle();
  click(buttonOf(form, "Add Rule"));
  ASSERT_EQ(settings.linkRoutes.peek().size(), 1u);
  EXPECT_EQ(settings.linkRoutes.peek().front().spaceID, store().activeSpaceID.get());
  enterLast(form, "field", "fjord.example/courses");
  EXPECT_EQ(settings.linkRoutes.peek().front().pattern, "fjord.example/courses");
  click(withTooltip(form, "Remove Rule"));
  EXPECT_TRUE(settings.linkRoutes.peek().empty());
}

}  // namespace
}  // namespace orvel::test
