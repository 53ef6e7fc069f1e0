#include "Base/GRef.h"
#include "DesignSystem/Paint.h"
#include "Models/Sidebar/Folders.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageSearch.h"
#include "Models/Windows/WindowChrome.h"
#include "Tests/Kit/Publish.h"
#include "Tests/Views/ShownWindow.h"
#include "Views/Sidebar/SidebarLayout.h"
#include "Views/Support/Menu.h"
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

TEST_F(WindowTest, RowsSelectCloseAndOpenFolders) {
  auto* row = list().widgetFor(keyOf(list(), sample.radio));
  ASSERT_TRUE(row->takeFocus());
  EXPECT_TRUE(press(*row, GDK_KEY_Return));
  EXPECT_EQ(space().selectedTab(), sample.radio);
  EXPECT_TRUE(row->has_css_class("selected"));
  EXPECT_TRUE(press(*row, GDK_KEY_Delete));
  EXPECT_FALSE(contains(space().today, *sample.radio));
  EXPECT_EQ(list().widgetFor(keyOf(list(), sample.radio)), nullptr);

  const auto folder = foldersOf(space().pinned).front();
  const auto count = list().rows().size();
  const auto children = folder->children.peek().size();
  store().folders.toggle(folder);
  settle();
  EXPECT_EQ(list().rows().size(), count - children);
}

TEST_F(WindowTest, AFolderIsRenamedInPlace) {
  const auto folder = foldersOf(space().pinned).front();
  publish(store().folders.renamingFolderID, folder->id);
  settle();
  ASSERT_TRUE(focus() && GTK_IS_TEXT(focus()));
  auto* field = gtk_widget_get_parent(focus());
  gtk_editable_set_text(GTK_EDITABLE(field), "Voyages");
  g_signal_emit_by_name(field, "activate");
  settle();
  EXPECT_EQ(folder->name.peek(), "Voyages");
  EXPECT_EQ(store().folders.renamingFolderID.peek(), std::nullopt);

  publish(store().folders.renamingFolderID, folder->id);
  settle();
  gtk_editable_set_text(GTK_EDITABLE(field), "Nothing of it");
  EXPECT_TRUE(pressKey(field, GDK_KEY_Escape));
  settle();
  EXPECT_EQ(folder->name.peek(), "Voyages");
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

TEST_F(WindowTest, WhatIsScrolledToIsClearOfTheFade) {
  constexpr double kFade = 12;
  openPages(60);
  const auto adjustment = window->view().sidebar().section().get_vadjustment();
  for (const size_t place : {55, 5, 30}) {
    const auto tab = space().today.peek()[place];
    list().scrollTo(keyOf(list(), tab));
    runFrames(20);
    auto* row = list().widgetFor(keyOf(list(), tab));
    ASSERT_NE(row, nullptr);
    const float y = placeIn(list().Gtk::Widget::gobj(), row->Gtk::Widget::gobj()).y;
    EXPECT_GE(y - adjustment->get_value(), kFade);
    EXPECT_LE(y + row->get_height() - adjustment->get_value(), adjustment->get_page_size() - kFade);
  }
}

TEST_F(WindowTest, ClearShowsBelowThePointerWhileThereIsSomethingToClear) {
  auto* heading = gtk_widget_get_parent(labelOf(root(), "Today"));
  auto* clear = buttonOf(heading, "Clear");
  ASSERT_NE(clear, nullptr);
  const auto point = [&](bool isOver) {
    auto* native = list().Gtk::Widget::gobj();
    const auto [x, y] = placeIn(native, heading, 20, 20);
    pointAt(native, isOver ? std::optional(std::pair(x, y)) : std::nullopt);
  };
  EXPECT_FALSE(gtk_widget_get_visible(clear));
  point(true);
  EXPECT_TRUE(gtk_widget_get_visible(clear));
  point(false);
  EXPECT_FALSE(gtk_widget_get_visible(clear));

  // A dialog takes the pointer away without a word.
  point(true);
  Gtk::Window dialog;
  gtk_window_set_transient_for(dialog.gobj(), window->native());
  dialog.set_modal(true);
  dialog.present();
  EXPECT_TRUE(runUntil([&] { return !gtk_widget_get_visible(clear); }));
  dialog.set_visible(false);
  window->present();
  ASSERT_TRUE(runUntil([&] { return gtk_window_is_active(window->native()); }));

  store().clearToday(store().activeSpace());
  settle();
  point(true);
  EXPECT_FALSE(gtk_widget_get_visible(clear));
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

TEST_F(WindowTest, ManySpacesScrollToTheActiveOne) {
  auto spaces = store().spaces.peek();
  for (int i = 0; i < 11; ++i)
    spaces.push_back(std::make_shared<Space>(UUID::random(), spaces.front()->profile,
                                             "More " + std::to_string(i), "leaf.fill", 0.3));
  store().setSpaces(spaces);
  settle();
  const auto isInView = [&](const char* name) {
    auto* seal = withTooltip(root(), name);
    auto* viewport = gtk_widget_get_ancestor(seal, GTK_TYPE_SCROLLED_WINDOW);
    const int x = static_cast<int>(placeIn(viewport, seal).x);
    return x >= 0 && x + gtk_widget_get_width(seal) <= gtk_widget_get_width(viewport);
  };
  EXPECT_TRUE(isInView("Personal"));
  store().switching.switchTo(spaces.back());
  settle();
  EXPECT_TRUE(runUntil([&] { return isInView("More 10"); }));
  EXPECT_FALSE(isInView("Personal"));
  // Also where nothing has a width before the window is shown.
  window = std::make_unique<MainWindow>(nullptr, store());
  window->present();
  settle();
  EXPECT_TRUE(runUntil([&] { return isInView("More 10"); }));

  auto* viewport =
      gtk_widget_get_ancestor(withTooltip(root(), "Personal"), GTK_TYPE_SCROLLED_WINDOW);
  gboolean isUsed = FALSE;
  for (int notch = 0; notch < 20; ++notch)
    forEachController(gtk_widget_get_parent(viewport), [&](GtkEventController* one) {
      if (GTK_IS_EVENT_CONTROLLER_SCROLL(one))
        g_signal_emit_by_name(one, "scroll", 0.0, -1.0, &isUsed);
    });
  EXPECT_TRUE(isUsed);
  EXPECT_TRUE(runUntil([&] { return isInView("Personal"); }));
}

TEST_F(WindowTest, ATooltipTellsWhatCannotBeReadAndCoversNoMenu) {
  const auto tells = [&](const TabRef& tab) {
    auto* row = list().widgetFor(keyOf(list(), tab))->Gtk::Widget::gobj();
    const auto tip = GRef<GtkTooltip>::adopt(GTK_TOOLTIP(g_object_new(GTK_TYPE_TOOLTIP, nullptr)));
    gboolean isShown = FALSE;
    g_signal_emit_by_name(row, "query-tooltip", 20, 10, FALSE, tip.get(), &isShown);
    return isShown != FALSE;
  };
  sample.radio->title = std::string("Radio");
  settle();
  EXPECT_FALSE(tells(sample.radio));
  EXPECT_TRUE(tells(sample.reading)) << "its title is cut";

  auto* row = list().widgetFor(keyOf(list(), sample.reading));
  EXPECT_TRUE(row->takeFocus());
  EXPECT_TRUE(row->get_has_tooltip());
  EXPECT_TRUE(press(*row, GDK_KEY_Menu));
  EXPECT_FALSE(row->get_has_tooltip());
  EXPECT_TRUE(dismissMenu(*row));
  settle();
  EXPECT_TRUE(row->get_has_tooltip());
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
  bool isUndone = false;
  store().showToast("Closed 5 tabs", {.undo = [&] { isUndone = true; }});
  settle();
  EXPECT_FALSE(hasState(toast, GTK_ACCESSIBLE_STATE_HIDDEN, TRUE));
  click(buttonOf(toast, "Undo"));
  EXPECT_TRUE(isUndone);
  EXPECT_TRUE(runUntil([&] { return !gtk_widget_get_mapped(toast); }));
  store().spaceEditing.beginNewSpace();
  settle();
  EXPECT_FALSE(isHidden(view.sheet()));
  publish(store().spaceEditing.spaceDraft, std::nullopt);
  settle();
  EXPECT_TRUE(isHidden(view.sheet()));

  const auto isPressed = [this](const char* name) {
    return hasState(withTooltip(root(), name), GTK_ACCESSIBLE_STATE_PRESSED,
                    GTK_ACCESSIBLE_TRISTATE_TRUE);
  };
  EXPECT_TRUE(isPressed("Personal"));
  store().switching.switchTo(store().spaces.peek()[1]);
  settle();
  EXPECT_TRUE(isPressed("Studio"));
  EXPECT_FALSE(isPressed("Personal"));

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

TEST_F(WindowTest, TheToolkitsColorsChangeOnceTheThemeHasStayed) {
  const auto accent = [&] {
    GdkRGBA color{};
    auto* context = gtk_widget_get_style_context(window->view().gobj());
    EXPECT_TRUE(gtk_style_context_lookup_color(context, "accent_bg_color", &color));
    return color;
  };
  const auto isOf = [&](const char* theme) {
    const auto scheme = window->view().scheme().peek();
    const auto wanted = rgba(Theme::withID(theme)->in(scheme).accent);
    const auto shown = accent();
    return gdk_rgba_equal(&shown, &wanted) != FALSE;
  };
  EXPECT_TRUE(isOf("claret"));
  for (const char* theme : {"navy", "sage"}) {
    space().hue = Theme::withID(theme)->hue;
    settle();
    EXPECT_TRUE(isOf("claret"));
  }
  publish(store().switching.spaceSwipeOffset, 10);
  runFrames(40);
  EXPECT_TRUE(isOf("claret")) << "the fingers are still at it";
  publish(store().switching.spaceSwipeOffset, 0);
  EXPECT_TRUE(runUntil([&] { return isOf("sage"); }));
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

  // Hidden it floats when it is called, and leaves the page where it is.
  store().chrome.toggleSidebar();
  settle();
  EXPECT_TRUE(runUntil([&] { return !sidebar.get_mapped() && pageX() < 10; }));
  store().chrome.setSidebarPeeking(true);
  sample.world.scheduler.advance(200ms);
  settle();
  EXPECT_TRUE(runUntil([&] { return sidebar.get_mapped(); }));
  EXPECT_TRUE(sidebar.has_css_class("floating"));
  EXPECT_LT(pageX(), 10);
}

}  // namespace
}  // namespace orvel::test
