#include <gtest/gtest.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/viewport.h>
#include <gtkmm/window.h>

#include "Tests/Views/ViewTest.h"
#include "Views/Support/RowList.h"

namespace orvel::test {
namespace {

constexpr int kViewHeight = 640;

class PlainRow final : public RowWidget {
 public:
  PlainRow() : RowWidget(0) {
    add_css_class("row");
    set_focusable(true);
  }
  void bind(const SidebarRow& row) override { shown = row.key.ordinal; }
  void unbind() override {}
  uint32_t shown = 0;
};

struct RowListTest : testing::Test, RowList::Delegate {
  Gtk::Window window;
  Gtk::ScrolledWindow scroller;
  RowList list{*this, "Rows", "application/x-test"};

  std::unique_ptr<RowWidget> makeRow(SidebarRow::Kind) override {
    return std::make_unique<PlainRow>();
  }
  std::optional<RowDrop> dropAt(const RowPoint&, Dragged) override { return std::nullopt; }
  bool drop(const RowPoint&) override { return false; }
  void dropLink(const RowPoint&, const URL&) override {}
  bool moveRow(size_t, int) override { return false; }

  static SidebarRow row(uint32_t ordinal) {
    return {.key = {.kind = SidebarRow::Kind::Tab, .ordinal = ordinal}};
  }
  static std::vector<SidebarRow> rows(uint32_t count) {
    std::vector<SidebarRow> result;
    for (uint32_t i = 0; i < count; ++i) result.push_back(row(i));
    return result;
  }
  void show(uint32_t count) {
    auto* viewport =
        Gtk::make_managed<Gtk::Viewport>(scroller.get_hadjustment(), scroller.get_vadjustment());
    viewport->set_child(list);
    scroller.set_child(*viewport);
    list.setAdjustment(scroller.get_vadjustment());
    list.setRows(rows(count));
    window.set_decorated(false);
    window.set_default_size(260, kViewHeight);
    window.set_child(scroller);
    window.present();
    ASSERT_TRUE(runUntil([this] { return scroller.get_vadjustment()->get_page_size() > 1; }));
    runFrames();
  }
  void TearDown() override {
    window.set_visible(false);
    window.unset_child();
    scroller.unset_child();
  }
  double rowHeight() const {
    return scroller.get_vadjustment()->get_upper() / static_cast<double>(list.rows().size());
  }
  size_t rowsInView() const {
    return static_cast<size_t>(scroller.get_vadjustment()->get_page_size() / rowHeight()) + 2;
  }
  uint32_t shownBy(uint32_t ordinal) const {
    auto* widget = dynamic_cast<PlainRow*>(list.widgetFor(row(ordinal).key));
    return widget ? widget->shown : ~0u;
  }
};

TEST_F(RowListTest, BuildsTheRowsInViewAndAScreenfulAtMost) {
  show(2000);
  EXPECT_GE(list.liveRowCount(), rowsInView() - 2);
  EXPECT_LE(list.liveRowCount(), 2 * rowsInView());
  EXPECT_LE(list.counters().built, 2 * rowsInView() + RowLayout::kKinds);

  // Scrolling uses the same widgets again.
  const auto adjustment = scroller.get_vadjustment();
  for (int i = 0; i < 40; ++i) adjustment->set_value(adjustment->get_value() + 160);
  EXPECT_LE(list.counters().built, 2 * rowsInView() + RowLayout::kKinds + 8);
  const auto first = static_cast<uint32_t>(adjustment->get_value() / rowHeight()) + 1;
  EXPECT_EQ(shownBy(first), first);
  const auto before = list.counters().built;
  adjustment->set_value(adjustment->get_upper() - adjustment->get_page_size());
  EXPECT_EQ(shownBy(1999), 1999u);
  EXPECT_LE(list.counters().built, before + 1);
}

TEST_F(RowListTest, OneChangedRowIsBoundAlone) {
  show(2000);
  auto changed = rows(2000);
  changed[3].depth = 1;
  const auto bound = list.counters().bound;
  list.setRows(changed);
  EXPECT_EQ(list.counters().bound, bound + 1);
  list.setRows(changed);
  EXPECT_EQ(list.counters().bound, bound + 1);
}

TEST_F(RowListTest, RowsKeepTheirWidgetsWhenTheyMove) {
  show(100);
  auto* widget = list.widgetFor(row(5).key);
  auto moved = rows(100);
  std::rotate(moved.begin(), moved.begin() + 5, moved.begin() + 6);
  const auto bound = list.counters().bound;
  list.setRows(moved, Spring::move);
  EXPECT_EQ(list.widgetFor(row(5).key), widget);
  EXPECT_EQ(list.counters().bound, bound);
  moved.erase(moved.begin());
  list.setRows(moved, Spring::quick);
  EXPECT_EQ(list.widgetFor(row(5).key), nullptr);
  EXPECT_TRUE(
      runUntil([&] { return scroller.get_vadjustment()->get_upper() < 99.5 * rowHeight(); }));
}

TEST_F(RowListTest, KeysMoveTheFocusAndTheView) {
  show(2000);
  ASSERT_TRUE(list.focusRow(0));
  const struct {
    guint key;
    bool isUsed;
    uint32_t focused;
  } steps[] = {{GDK_KEY_Up, false, 0},      {GDK_KEY_Down, true, 1}, {GDK_KEY_End, true, 1999},
               {GDK_KEY_Down, false, 1999}, {GDK_KEY_Home, true, 0}, {GDK_KEY_Down, true, 1}};
  for (const auto& step : steps) {
    EXPECT_EQ(pressKey(list.gobj(), step.key), step.isUsed);
    auto* focus = dynamic_cast<PlainRow*>(window.get_focus());
    ASSERT_NE(focus, nullptr);
    EXPECT_EQ(focus->shown, step.focused);
    const bool isAtEnd = scroller.get_vadjustment()->get_value() > 1900 * rowHeight();
    EXPECT_EQ(isAtEnd, step.focused == 1999);
  }

  // The list is one thing to the Tab key, and to assistive technology.
  EXPECT_FALSE(list.child_focus(Gtk::DirectionType::TAB_FORWARD));
  window.unset_focus();
  EXPECT_TRUE(list.child_focus(Gtk::DirectionType::TAB_FORWARD));
  window.unset_focus();
  EXPECT_TRUE(list.child_focus(Gtk::DirectionType::TAB_BACKWARD));
  EXPECT_EQ(window.get_focus(), list.widgetFor(row(1).key));
  auto* spoken = GTK_ACCESSIBLE(list.gobj());
  EXPECT_EQ(gtk_accessible_get_accessible_role(spoken), GTK_ACCESSIBLE_ROLE_LIST);
  EXPECT_TRUE(gtk_test_accessible_has_property(spoken, GTK_ACCESSIBLE_PROPERTY_LABEL));
}

}  // namespace
}  // namespace orvel::test
