#include "Tests/Views/ShownWindow.h"

#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageSearch.h"

namespace orvel::test {
namespace {

struct PageQuestionTest : ShownWindow {
  std::shared_ptr<FakeWebView> page;
  std::vector<std::string> given;  // the answers that the page got

  void SetUp() override {
    ShownWindow::SetUp();
    page = sample.world.view(sample.reading);
    page->isOnScreen = true;
    gtk_window_set_focus(window->native(), nullptr);
  }
  void confirm(const char* words) {
    page->uiDelegate()->runJavaScriptConfirmPanel(
        *page, words, {.securityOriginHost = "kelp.test"},
        [this](bool isSure) { given.emplace_back(isSure ? "OK" : "Cancel"); });
    settle();
  }
  PageQuestionView& question() { return window->view().page().question(); }
  bool hasKeyboard() {
    return focus() && gtk_widget_is_ancestor(focus(), GTK_WIDGET(question().gobj()));
  }
};

TEST_F(PageQuestionTest, APagesDialogStandsUnderItsHostAndGivesTheKeyboardBack) {
  confirm("Sure?");
  EXPECT_TRUE(gtk_widget_has_css_class(labelOf(root(), "kelp.test"), "host"));
  EXPECT_NE(labelOf(root(), "Sure?"), nullptr);
  ASSERT_EQ(focus(), GTK_WIDGET(question().button(0)->gobj()));
  const int focusCount = page->focusCount;
  gtk_widget_activate(focus());
  EXPECT_TRUE(runUntil([this] { return given.size() == 1; }));
  settle();
  EXPECT_FALSE(hasKeyboard());
  EXPECT_EQ(page->focusCount, focusCount + 1) << "the page has the keyboard again";

  confirm("Really?");
  EXPECT_TRUE(press(question(), GDK_KEY_Escape));
  EXPECT_THAT(given, ElementsAre("OK", "Cancel"));
}

TEST_F(PageQuestionTest, WhoTypesKeepsTheKeyboard) {
  for (const bool isSearching : {true, false}) {
    if (isSearching)
      store().pageSearch.showFindBar();
    else
      store().showCommandBar(CommandBarMode::NewTab);
    settle();
    auto* typing = focus();
    ASSERT_TRUE(GTK_IS_TEXT(typing));
    confirm("Sure?");
    EXPECT_TRUE(question().isShown());
    EXPECT_EQ(focus(), typing);
    sample.reading->questions.withdrawAll();
    settle();
  }
}

}  // namespace
}  // namespace orvel::test
