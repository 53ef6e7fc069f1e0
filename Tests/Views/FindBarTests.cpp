#include <gmock/gmock.h>

#include "Tests/Views/ShownWindow.h"

namespace orvel {
namespace {

using namespace test;
using testing::ElementsAre;

struct FindBarTest : ShownWindow {
  void SetUp() override {
    ShownWindow::SetUp();
    page().pageText = "one word";
    store().showFindBar();
    settle();
  }
  FakeWebView& page() { return *sample.world.view(sample.reading); }
  FindBar& bar() { return window->view().findBar(); }
  GtkWidget* field() { return GTK_WIDGET(bar().field().entry().gobj()); }
  GtkWidget* part(const char* tooltip) {
    GtkWidget* found = nullptr;
    forEachWidget(bar().Gtk::Widget::gobj(), [&](GtkWidget* one) {
      if (g_strcmp0(gtk_widget_get_tooltip_text(one), tooltip) == 0) found = one;
    });
    return found;
  }
  bool saysNotFound() {
    bool isSaid = false;
    forEachWidget(bar().Gtk::Widget::gobj(), [&](GtkWidget* one) {
      isSaid |= GTK_IS_LABEL(one) && gtk_widget_get_mapped(one) &&
                g_strcmp0(gtk_label_get_text(GTK_LABEL(one)), "Not found") == 0;
    });
    return isSaid;
  }
  void type(const char* text) {
    g_signal_emit_by_name(field(), "insert-at-cursor", text);
    settleField();
  }
  // What is typed is read when the toolkit is done with it.
  void settleField() {
    runFrames(1);
    settle();
  }
};

TEST_F(FindBarTest, SearchesThePageWhileOneTypes) {
  EXPECT_EQ(gtk_window_get_focus(window->native()), field());
  EXPECT_FALSE(saysNotFound());
  type("wor");
  EXPECT_FALSE(saysNotFound());
  type("n");
  EXPECT_TRUE(saysNotFound());
  EXPECT_FALSE(gtk_widget_is_sensitive(part("Next (Ctrl+G)")));
  store().showFindBar();
  settle();
  EXPECT_EQ(bar().field().text(), "worn") << "asked for again it stays as it is";
  gtk_editable_set_text(GTK_EDITABLE(field()), "");
  settleField();
  EXPECT_FALSE(saysNotFound());
  EXPECT_TRUE(gtk_widget_is_sensitive(part("Next (Ctrl+G)")));
  EXPECT_THAT(page().searches, ElementsAre("wor", "worn"));
}

TEST_F(FindBarTest, GoesThroughTheMatches) {
  type("word");
  page().searches.clear();
  g_signal_emit_by_name(part("Previous (Ctrl+Shift+G)"), "clicked");
  settle();
  g_signal_emit_by_name(part("Next (Ctrl+G)"), "clicked");
  settle();
  EXPECT_TRUE(pressKey(bar().field().Gtk::Widget::gobj(), GDK_KEY_Up));
  settle();
  EXPECT_TRUE(pressKey(bar().field().Gtk::Widget::gobj(), GDK_KEY_Down));
  settle();
  g_signal_emit_by_name(field(), "activate");
  settle();
  EXPECT_TRUE(store().performAction(ActionID::FindNext));
  settle();
  EXPECT_THAT(page().searches,
              ElementsAre("word backwards", "word", "word backwards", "word", "word", "word"));
}

TEST_F(FindBarTest, GoesAndGivesTheKeyboardBack) {
  type("word");
  const int focusCount = page().focusCount;
  EXPECT_TRUE(pressKey(bar().field().Gtk::Widget::gobj(), GDK_KEY_Escape));
  settle();
  EXPECT_FALSE(store().find.peek());
  EXPECT_NE(gtk_window_get_focus(window->native()), field());
  EXPECT_EQ(page().focusCount, focusCount + 1);
  EXPECT_TRUE(runUntil([this] { return !bar().get_mapped(); }));

  store().showFindBar();
  settle();
  EXPECT_EQ(bar().field().text(), "");
  g_signal_emit_by_name(part("Close (Esc)"), "clicked");
  settle();
  EXPECT_FALSE(store().find.peek());

  store().showFindBar();
  settle();
  sample.reading->title = std::string("Another title");
  settle();
  EXPECT_TRUE(store().find.peek());
  store().select(sample.radio);
  settle();
  EXPECT_FALSE(store().find.peek()) << "it was opened for another page";
}

}  // namespace
}  // namespace orvel
