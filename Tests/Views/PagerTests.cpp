#include "BrowserCore/Session/SessionRecord.h"
#include "DesignSystem/Palette.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Windows/Toasts.h"
#include "Models/Windows/WindowChrome.h"
#include "Tests/Kit/Publish.h"
#include "Tests/Views/ShownWindow.h"

namespace orvel::test {
namespace {
// The window with a space beside the active one, and a touchpad under the pointer.
struct PagerTest : ShownWindow {
  std::vector<std::shared_ptr<Space>> spaces;
  GtkEventController* scroll = nullptr;
  GtkEventController* pointer = nullptr;

  void SetUp() override {
    ShownWindow::SetUp();
    spaces = store().spaces.peek();
    openPages(30, spaces[1]);
    sample.world.desktop.isMotionOn = true;
    settle();
    forEachController(root(), [this](GtkEventController* one) {
      if (gtk_event_controller_get_propagation_phase(one) != GTK_PHASE_CAPTURE) return;
      if (!scroll && GTK_IS_EVENT_CONTROLLER_SCROLL(one)) scroll = one;
      if (!pointer && GTK_IS_EVENT_CONTROLLER_MOTION(one)) pointer = one;
    });
    ASSERT_TRUE(scroll && pointer);
    g_signal_emit_by_name(pointer, "motion", 100.0, 400.0);
  }
  SpacePager& pager() { return window->view().sidebar().pager(); }
  double width() { return pager().get_width(); }

  void begin() { g_signal_emit_by_name(scroll, "scroll-begin"); }
  void end() { g_signal_emit_by_name(scroll, "scroll-end"); }
  // By as many steps of the device; positive leads to the next space.
  void move(double steps) {
    gboolean isUsed = TRUE;
    g_signal_emit_by_name(scroll, "scroll", steps, 0.0, &isUsed);
    EXPECT_FALSE(isUsed);
    settle();
  }
  // Where the page of a space begins, in the pager.
  std::optional<double> pageX(const std::shared_ptr<Space>& space) {
    auto* section = pager().sectionOf(space);
    if (!section || !section->get_mapped()) return std::nullopt;
    return placeIn(pager().Gtk::Widget::gobj(), section->Gtk::Widget::gobj()).x;
  }
  Theme::Backdrop backdrop() { return window->view().sidebar().ground().shown(); }
};

TEST_F(PagerTest, NothingIsSwipedBelowALayer) {
  const std::function<void(bool)> layers[] = {
      [this](bool isShown) {
        isShown ? store().spaceEditing.beginNewSpace()
                : publish(store().spaceEditing.spaceDraft, std::nullopt);
      },
      [this](bool isShown) {
        isShown ? store().showCommandBar(CommandBarMode::NewTab) : store().dismissCommandBar();
      }};
  for (const auto& layer : layers) {
    layer(true);
    settle();
    begin();
    move(6);
    EXPECT_EQ(store().switching.spaceSwipeOffset.peek(), 0);
    end();
    layer(false);
    settle();
  }
  begin();
  move(6);
  EXPECT_NE(store().switching.spaceSwipeOffset.peek(), 0);
}

TEST_F(PagerTest, ThePagesFollowTheFingers) {
  EXPECT_EQ(pager().sectionOf(spaces[1]), nullptr);
  begin();
  move(6);
  const double way = -store().switching.spaceSwipeOffset.peek();
  ASSERT_GT(way, 20);
  EXPECT_NEAR(*pageX(spaces[0]), -way, 1);
  EXPECT_NEAR(*pageX(spaces[1]), width() - way, 1);
  // The ground lies between the two spaces' by as much, color by color.
  const auto from = Theme::forHue(spaces[0]->hue).in(window->view().scheme().peek()).backdrop;
  const auto to = Theme::forHue(spaces[1]->hue).in(window->view().scheme().peek()).backdrop;
  EXPECT_EQ(backdrop(), blend(from, to, way / width()));

  // Cut short by the pointer's leaving it goes back, however far it has come.
  move(8);
  g_signal_emit_by_name(pointer, "leave");
  runFrames(10);
  sample.world.scheduler.advance(1s);
  EXPECT_TRUE(runUntil([&] { return pageX(spaces[0]) == 0.0 && !pager().sectionOf(spaces[1]); }));
  EXPECT_EQ(store().activeSpace(), spaces[0]);
  EXPECT_TRUE(runUntil([&] { return backdrop() == from; }));
}

TEST_F(PagerTest, NothingIsBuiltOrBoundWhileTheFingersMove) {
  begin();
  move(2);
  const auto* next = pager().sectionOf(spaces[1]);
  ASSERT_NE(next, nullptr);
  const auto counts = [&] {
    const auto& active = pager().sectionOf(spaces[0])->list().counters();
    const auto& coming = pager().sectionOf(spaces[1])->list().counters();
    return std::array{active.built, active.bound, coming.built, coming.bound};
  };
  const auto before = counts();
  int providersLoaded = 0;
  const guint loading = g_signal_add_emission_hook(
      g_signal_lookup("gtk-private-changed", GTK_TYPE_STYLE_PROVIDER), 0,
      [](GSignalInvocationHint*, guint, const GValue*, gpointer count) -> gboolean {
        ++*static_cast<int*>(count);
        return TRUE;
      },
      &providersLoaded, nullptr);
  for (int i = 0; i < 12; ++i) move(i < 6 ? 1 : -1);
  g_signal_remove_emission_hook(g_signal_lookup("gtk-private-changed", GTK_TYPE_STYLE_PROVIDER),
                                loading);
  EXPECT_EQ(counts(), before);
  EXPECT_EQ(providersLoaded, 0);
  EXPECT_EQ(pager().sectionOf(spaces[1]), next);
}

TEST_F(PagerTest, APageShowsItsSelectionAndNotTheFormerSpacesPlace) {
  const auto value = [&] { return pager().section().get_vadjustment()->get_value(); };
  for (const int i : {0, 1, 2}) {
    const auto& tabs = spaces[1]->today.peek();
    spaces[1]->selectedTabID = i == 1 ? tabs.front()->id : tabs.back()->id;
    store().switching.switchTo(spaces[1]);
    settle();
    EXPECT_TRUE(runUntil([&] { return i == 1 ? value() < 100 : value() > 100; })) << i;
    store().switching.switchTo(spaces[3]);
    settle();
    sample.world.scheduler.advance(1s);
  }
}

TEST_F(PagerTest, APageHasItsOwnSpacesTheme) {
  begin();
  move(4);
  const auto wears = [&](size_t space, const char* theme) {
    return pager().sectionOf(spaces[space])->has_css_class(theme);
  };
  EXPECT_TRUE(wears(0, "theme-claret"));
  EXPECT_TRUE(wears(1, "theme-cognac"));
  publish(store().spaceEditing.previewTheme, *Theme::withID("sage"));
  settle();
  EXPECT_TRUE(wears(0, "theme-sage"));
  EXPECT_TRUE(wears(1, "theme-cognac"));
}

}  // namespace
}  // namespace orvel::test
