#include "Tests/Views/ShownWindow.h"

#include "Models/Commands/CommandList.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageSearch.h"

namespace orvel::test {
namespace {

struct FindBarTest : ShownWindow {
  void SetUp() override {
    ShownWindow::SetUp();
    page().pageText = "one word";
    show();
  }
  void show() {
    store().pageSearch.showFindBar();
    settle();
  }
  FakeWebView& page() { return *sample.world.view(sample.reading); }
  FindBar& bar() { return window->view().findBar(); }
  GtkWidget* field() { return GTK_WIDGET(bar().field().entry().gobj()); }
  GtkWidget* part(const char* tooltip) { return withTooltip(bar().Gtk::Widget::gobj(), tooltip); }
  bool saysNotFound() { return labelOf(bar().Gtk::Widget::gobj(), "Not found") != nullptr; }
};

TEST_F(FindBarTest, SearchesThePageWhileOneTypes) {
  insert(bar().field(), "wor");
  insert(bar().field(), "n");
  EXPECT_TRUE(saysNotFound());
  EXPECT_FALSE(gtk_widget_is_sensitive(part("Next (Ctrl+G)")));
  show();
  EXPECT_EQ(bar().field().text(), "worn") << "asked for again it stays as it is";
  gtk_editable_set_text(GTK_EDITABLE(field()), "");
  insert(bar().field(), "");
  EXPECT_FALSE(saysNotFound());
  EXPECT_TRUE(gtk_widget_is_sensitive(part("Next (Ctrl+G)")));
  EXPECT_THAT(page().searches, ElementsAre("wor", "worn"));
  EXPECT_FALSE(page().hasMarks);
}

TEST_F(FindBarTest, TakesTheKeyboardEachTimeItIsAskedFor) {
  insert(bar().field(), "word");
  store().focusWebView();
  gtk_window_set_focus(window->native(), nullptr);
  EXPECT_TRUE(store().commands.performAction(ActionID::Find));
  settle();
  EXPECT_EQ(focus(), field());
  store().showCommandBar(CommandBarMode::NewTab);
  settle();
  EXPECT_NE(focus(), field());
  EXPECT_TRUE(store().commands.performAction(ActionID::Find));
  settle();
  EXPECT_FALSE(store().commandBar.peek());
  EXPECT_EQ(focus(), field());
}

TEST_F(FindBarTest, GoesThroughTheMatches) {
  insert(bar().field(), "word");
  page().searches.clear();
  click(part("Previous (Ctrl+Shift+G)"));
  click(part("Next (Ctrl+G)"));
  EXPECT_TRUE(press(bar().field(), GDK_KEY_Up));
  EXPECT_TRUE(press(bar().field(), GDK_KEY_Down));
  EXPECT_THAT(page().searches, ElementsAre("word backwards", "word", "word backwards", "word"));
}

TEST_F(FindBarTest, GoesAndGivesTheKeyboardBack) {
  insert(bar().field(), "word");
  const int focusCount = page().focusCount;
  EXPECT_TRUE(press(bar().field(), GDK_KEY_Escape));
  EXPECT_FALSE(store().pageSearch.find.peek());
  EXPECT_NE(focus(), field());
  EXPECT_GT(page().focusCount, focusCount);

  show();
  sample.reading->title = std::string("Another title");
  settle();
  EXPECT_TRUE(store().pageSearch.find.peek());
  store().select(sample.radio);
  settle();
  EXPECT_FALSE(store().pageSearch.find.peek()) << "it was opened for another page";
}

}  // namespace
}  // namespace orvel::test
