#include "Models/Store/BrowserStore.h"
#include "Tests/Kit/Publish.h"
#include "Tests/Views/ShownWindow.h"
#include "Views/History/HistoryContent.h"

namespace orvel::test {
namespace {

struct HistoryTest : ShownWindow {
  void SetUp() override {
    ShownWindow::SetUp();
    store().history->removeAll(std::nullopt);
    settle();
  }
  void visit(const std::string& host, const std::string& title, Duration ago = {}) {
    store().history->recordVisit(space().profile->id, address("https://" + host + "/"), title,
                                 sample.world.scheduler.now() - ago);
  }
  void show() {
    store().showUtilityWindow(UtilityWindow::History);
    settle();
  }
  HistoryContent& content() {
    return static_cast<HistoryContent&>(*window->utilityWindows().content(UtilityWindow::History));
  }
  GtkWindow* native() { return window->utilityWindows().native(UtilityWindow::History); }
  GtkWidget* list() { return GTK_WIDGET(content().list().gobj()); }
  // What the window shows: labels on screen, from the top.
  std::vector<std::string> texts(GtkWidget* root) {
    std::vector<std::string> texts;
    forEachWidget(root, [&](GtkWidget* one) {
      if (GTK_IS_LABEL(one) && gtk_widget_get_mapped(one) &&
          !gtk_widget_has_css_class(one, "time") && !gtk_widget_has_css_class(one, "letter-tile"))
        texts.emplace_back(gtk_label_get_text(GTK_LABEL(one)));
    });
    return texts;
  }
  bool isShown(const char* text) { return labelOf(GTK_WIDGET(native()), text) != nullptr; }
};

TEST_F(HistoryTest, ListsVisitsByDayAndSearchesThem) {
  visit("tide.test", "Tide tables", 1h);
  visit("reef.test", "", 2h);
  visit("harbour.test", "Harbour", 24h);
  show();
  EXPECT_THAT(texts(list()), ElementsAre("Today", "Tide tables", "tide.test", "reef.test",
                                         "reef.test", "Yesterday", "Harbour", "harbour.test"));
  EXPECT_EQ(gtk_window_get_focus(native()), GTK_WIDGET(content().field().entry().gobj()));
  insert(content().field(), "harbour lights");
  EXPECT_TRUE(isShown("No Results"));
  EXPECT_TRUE(press(content().field(), GDK_KEY_Escape));
  EXPECT_TRUE(isShown("Tide tables")) << "Escape takes the search back first";
  store().history->removeAll(std::nullopt);
  publish(store().historyRevision, store().historyRevision.peek() + 1);
  settle();
  EXPECT_TRUE(isShown("No History Yet"));
  EXPECT_TRUE(press(content().field(), GDK_KEY_Escape));
  EXPECT_FALSE(gtk_widget_get_visible(GTK_WIDGET(native())));
  visit("late.test", "Late");
  show();
  EXPECT_TRUE(isShown("Late")) << "what came while it was closed";
}

TEST_F(HistoryTest, OpensAndDeletesByKeyboard) {
  for (int i = 0; i < 4; ++i) visit("page" + std::to_string(i) + ".test", "", i * 1min);
  show();
  EXPECT_TRUE(press(content().field(), GDK_KEY_Down));
  EXPECT_TRUE(press(content().list(), GDK_KEY_Delete));
  EXPECT_EQ(content().items()->get_n_items(), 3u);
  EXPECT_TRUE(isShown("Today")) << "the day's title goes to the next";
  EXPECT_TRUE(press(content().list(), GDK_KEY_Delete)) << "the keyboard stays in the list";
  EXPECT_THAT(texts(list()),
              ElementsAre("Today", "page2.test", "page2.test", "page3.test", "page3.test"));
  EXPECT_TRUE(pressKey(gtk_window_get_focus(native()), GDK_KEY_Menu));
  settle();
  const auto rows = menuRows(list());
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows.back().title, "Delete from History");
  click(rows.back().widget);
  EXPECT_THAT(texts(list()), ElementsAre("Today", "page3.test", "page3.test"));

  g_signal_emit_by_name(list(), "activate", 0);
  settle();
  EXPECT_EQ(space().selectedTab()->url.peek()->text(), "https://page3.test/");
  EXPECT_TRUE(pressKey(list(), GDK_KEY_Up));
  EXPECT_TRUE(gtk_widget_is_ancestor(gtk_window_get_focus(native()),
                                     content().field().Gtk::Widget::gobj()));
}

}  // namespace
}  // namespace orvel::test
