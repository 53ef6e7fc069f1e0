#include "Models/Sidebar/Folders.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageSearch.h"
#include "Models/Windows/WindowChrome.h"
#include "Tests/Kit/Publish.h"
#include "Tests/Views/ShownWindow.h"
#include "Views/Sidebar/SidebarLayout.h"
#include "Views/Window/UtilityWindows.h"

namespace orvel::test {
namespace {

struct WindowTest : ShownWindow {
  RowList& list() { return window->view().sidebar().section().list(); }

  static SidebarRow::Key keyOf(const RowList& list, const TabRef& tab) {
    for (const auto& row : list.rows())
      if (row.key.kind == SidebarRow::Kind::Tab && row.tabs.front() == tab) return row.key;
    return {};
  }
};

TEST_F(WindowTest, AChangedTitleTouchesItsRowAlone) {
  const auto before = list().counters();
  sample.radio->title = std::string("Strand Radio: the news");
  settle();
  auto* row = list().widgetFor(keyOf(list(), sample.radio));
  ASSERT_NE(row, nullptr);
  EXPECT_TRUE(labelOf(row->Gtk::Widget::gobj(), "Strand Radio: the news"));
  auto* spoken = row->Gtk::Widget::gobj();
  EXPECT_EQ(gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(spoken)),
            GTK_ACCESSIBLE_ROLE_LIST_ITEM);
  EXPECT_TRUE(hasProperty(spoken, GTK_ACCESSIBLE_PROPERTY_LABEL, "Strand Radio: the news"));
  EXPECT_EQ(list().counters().bound, before.bound);
  EXPECT_EQ(list().counters().built, before.built);
}

TEST_F(WindowTest, AFolderMadeOutOfSightTakesTheKeyboard) {
  openPages(60);
  auto adjustment = window->view().sidebar().section().get_vadjustment();
  adjustment->set_value(adjustment->get_upper());
  settle();
  store().folders.newFolder();
  settle();
  ASSERT_TRUE(runUntil([this] { return focus() && GTK_IS_TEXT(focus()); }));
  auto* field = gtk_widget_get_parent(focus());
  EXPECT_STREQ(gtk_editable_get_text(GTK_EDITABLE(field)), "New Folder");
  settle();
  const float y = placeIn(list().Gtk::Widget::gobj(), field).y;
  EXPECT_GE(y, adjustment->get_value());
  EXPECT_LT(y, adjustment->get_value() + adjustment->get_page_size());
}

TEST_F(WindowTest, ThePeekingSidebarLiesOverTheFindBar) {
  gtk_window_set_default_size(window->native(), 730, 500);
  publish(store().chrome.sidebarWidth, kMaximumSidebarWidth);
  publish(store().chrome.isSidebarVisible, false);
  publish(store().chrome.isSidebarPeeking, true);
  store().pageSearch.showFindBar();
  settle();
  auto* bar = window->view().findBar().Gtk::Widget::gobj();
  auto* sidebar = window->view().sidebar().Gtk::Widget::gobj();
  ASSERT_TRUE(
      runUntil([&] { return gtk_widget_get_mapped(bar) && gtk_widget_get_mapped(sidebar); }));
  runFrames();
  const auto [x, y] = placeIn(root(), bar, 20, 20);
  ASSERT_LT(x, kMaximumSidebarWidth);
  auto* seen = gtk_widget_pick(root(), x, y, GTK_PICK_INSENSITIVE);
  EXPECT_TRUE(gtk_widget_is_ancestor(seen, sidebar)) << G_OBJECT_TYPE_NAME(seen);
}

TEST_F(WindowTest, WithoutATabThereIsTheEmptyState) {
  EXPECT_TRUE(window->view().page().showsPage());
  EXPECT_EQ(gtk_window_get_title(window->native()), sample.reading->displayTitle());
  space().selectedTabID = std::nullopt;
  settle();
  EXPECT_FALSE(window->view().page().showsPage());
  EXPECT_STREQ(gtk_window_get_title(window->native()), "Orvel");
  EXPECT_TRUE(labelOf(root(), "Search or enter address"));
}

TEST_F(WindowTest, APageThatEndsUnseenComesBackWhenItIsSeen) {
  const TabRef tab = space().selectedTab();
  gtk_widget_set_visible(GTK_WIDGET(window->native()), FALSE);
  const auto view = sample.world.view(tab);
  view->isOnScreen = false;
  view->die();
  settle();
  EXPECT_EQ(tab->liveWebView(), nullptr) << "or one that ends at once would do so for ever";
  window->present();
  settle();
  EXPECT_NE(tab->liveWebView(), nullptr);
}

TEST_F(WindowTest, AssistiveToolsHearWhatIsThere) {
  const auto isHidden = [](Gtk::Widget& widget) {
    return hasState(widget.gobj(), GTK_ACCESSIBLE_STATE_HIDDEN, TRUE);
  };
  auto& view = window->view();
  auto* sheet = view.sheet().Gtk::Widget::gobj();
  auto* toast = withClass(root(), "toast");
  EXPECT_TRUE(isHidden(view.sheet()));
  EXPECT_TRUE(hasState(toast, GTK_ACCESSIBLE_STATE_HIDDEN, TRUE));
  EXPECT_TRUE(hasProperty(sheet, GTK_ACCESSIBLE_PROPERTY_MODAL, TRUE));
  store().showToast("Closed 5 tabs", {});
  settle();
  EXPECT_FALSE(hasState(toast, GTK_ACCESSIBLE_STATE_HIDDEN, TRUE));
  store().spaceEditing.beginNewSpace();
  settle();
  EXPECT_FALSE(isHidden(view.sheet()));
  const auto isPressed = [this](const char* name) {
    return hasState(withTooltip(root(), name), GTK_ACCESSIBLE_STATE_PRESSED,
                    GTK_ACCESSIBLE_TRISTATE_TRUE);
  };
  EXPECT_TRUE(isPressed("Personal"));
  EXPECT_FALSE(isPressed("Studio"));

  auto* handle = withClass(root(), "sidebar-edge");
  publish(store().chrome.sidebarWidth, 300);
  settle();
  EXPECT_TRUE(hasProperty(handle, GTK_ACCESSIBLE_PROPERTY_VALUE_MIN, kMinimumSidebarWidth));
  EXPECT_TRUE(hasProperty(handle, GTK_ACCESSIBLE_PROPERTY_VALUE_MAX, kMaximumSidebarWidth));
  EXPECT_TRUE(hasProperty(handle, GTK_ACCESSIBLE_PROPERTY_VALUE_NOW, 300.0));
}

TEST_F(WindowTest, KeysMoveTheRowThatHasThem) {
  auto& today = space().today;
  const auto first = today.peek().front();
  auto* row = list().widgetFor(keyOf(list(), first));
  ASSERT_TRUE(row->takeFocus());
  auto* native = list().Gtk::Widget::gobj();
  const auto held = static_cast<GdkModifierType>(GDK_ALT_MASK | GDK_SHIFT_MASK);
  EXPECT_TRUE(pressKey(native, GDK_KEY_Down, held));
  settle();
  EXPECT_EQ(today.peek()[1], first);
  EXPECT_EQ(focus(), row->Gtk::Widget::gobj());
  EXPECT_TRUE(pressKey(native, GDK_KEY_Up, held));
  EXPECT_TRUE(pressKey(native, GDK_KEY_Up, held));
  settle();
  EXPECT_FALSE(contains(today, *first));
  EXPECT_EQ(focus(), row->Gtk::Widget::gobj());
}

TEST_F(WindowTest, WhatTakesTheKeyboardHasAName) {
  space().selectedTabID = std::nullopt;
  store().spaceEditing.beginNewSpace();
  store().showUtilityWindow(UtilityWindow::Settings);
  store().showUtilityWindow(UtilityWindow::History);
  settle();
  int count = 0;
  const auto check = [&count](GtkWidget* widget) {
    // The text within an entry is told as the entry; rows in reserve are not told.
    const bool isReached = gtk_widget_get_focusable(widget) && !GTK_IS_TEXT(widget) &&
                           gtk_widget_get_child_visible(widget);
    if (!GTK_IS_BUTTON(widget) && !isReached) return;
    ++count;
    const auto* label = GTK_IS_BUTTON(widget) ? gtk_button_get_label(GTK_BUTTON(widget)) : nullptr;
    const bool isEmptyTile =
        gtk_widget_has_css_class(widget, "tile") && !gtk_widget_get_focusable(widget);
    EXPECT_TRUE(
        (label && *label) || isEmptyTile ||
        gtk_test_accessible_has_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL))
        << G_OBJECT_TYPE_NAME(widget) << " in "
        << G_OBJECT_TYPE_NAME(gtk_widget_get_parent(widget));
  };
  forEachWidget(window->view().gobj(), check);
  for (const auto which : {UtilityWindow::Settings, UtilityWindow::History})
    forEachWidget(gtk_window_get_child(window->utilityWindows().native(which)), check);
  EXPECT_GT(count, 60);
}

TEST_F(WindowTest, IconsGrowWithTheText) {
  auto* settings = gtk_settings_get_default();
  int ordinary = 0;
  g_object_get(settings, "gtk-xft-dpi", &ordinary, nullptr);
  const auto sizes = [this] {
    auto* button = withTooltip(root(), "Main Menu (F10)");
    auto* tile = findWidget(root(), [](GtkWidget* one) {
      return gtk_widget_has_css_class(one, "site") && gtk_widget_get_mapped(one);
    });
    return std::pair(gtk_widget_get_width(gtk_button_get_child(GTK_BUTTON(button))),
                     gtk_widget_get_height(tile));
  };
  EXPECT_EQ(sizes(), std::pair(16, 16));
  g_object_set(settings, "gtk-xft-dpi", 192 * 1024, nullptr);
  EXPECT_TRUE(runUntil([&] { return sizes() == std::pair(24, 32); }))
      << "in its button, and in a row";
  g_object_set(settings, "gtk-xft-dpi", ordinary, nullptr);
}

TEST_F(WindowTest, ANarrowWindowHasANarrowSidebarBesideThePage) {
  const double width = store().chrome.sidebarWidth.peek();
  auto& sidebar = window->view().sidebar();
  auto* page = window->view().page().Gtk::Widget::gobj();
  const auto pageX = [&] { return placeIn(window->view().gobj(), page).x; };
  EXPECT_NEAR(pageX(), width, 1);
  gtk_window_set_default_size(window->native(), 640, 420);
  EXPECT_TRUE(runUntil([&] { return gtk_widget_get_width(root()) < kRoomyWidth; }));
  EXPECT_NEAR(pageX(), kMinimumSidebarWidth, 1);
  EXPECT_EQ(sidebar.get_width(), kMinimumSidebarWidth);
  EXPECT_FALSE(sidebar.has_css_class("floating"));
  EXPECT_EQ(store().chrome.sidebarWidth.peek(), width);
}

}  // namespace
}  // namespace orvel::test
