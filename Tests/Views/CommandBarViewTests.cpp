#include "Base/GRef.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Windows/WindowChrome.h"
#include "Tests/Kit/Publish.h"
#include "Tests/Views/ShownWindow.h"

namespace orvel::test {
namespace {

struct CommandBarViewTest : ShownWindow {
  CommandBarView& view() { return window->view().commandBar(); }
  Gtk::Text& entry() { return view().field().entry(); }
  void show(CommandBarMode mode = CommandBarMode::NewTab) {
    store().showCommandBar(mode);
    settle();
  }
  // Lets the field settle first, which the model then hears of.
  void settleField() {
    runFrames();
    settle();
  }
  // As an input method commits what keys stand for.
  void type(const char* text) {
    forEachController(GTK_WIDGET(entry().gobj()), [text](GtkEventController* one) {
      if (!GTK_IS_EVENT_CONTROLLER_KEY(one)) return;
      if (auto* input = gtk_event_controller_key_get_im_context(GTK_EVENT_CONTROLLER_KEY(one)))
        g_signal_emit_by_name(input, "commit", text);
    });
    settleField();
  }
  void act(const char* keybinding) {
    g_signal_emit_by_name(entry().gobj(), keybinding);
    settleField();
  }
  bool press(guint key) { return ShownWindow::press(view().field(), key); }
  void pressPill() { click(GTK_WIDGET(window->view().sidebar().pill().address().gobj())); }
  std::string shown() { return view().field().text(); }
  // The selected part of the field's text; empty for a caret.
  std::string marked() {
    int begin = 0;
    int end = 0;
    if (!entry().get_selection_bounds(begin, end)) return {};
    return shown().substr(static_cast<size_t>(begin), static_cast<size_t>(end - begin));
  }
  std::pair<double, double> middleOfRow(size_t index) {
    double x = 0;
    double y = 0;
    auto& row = view().list().row(index);
    row.translate_coordinates(view(), row.get_width() / 2.0, row.get_height() / 2.0, x, y);
    return {x, y};
  }
};

TEST_F(CommandBarViewTest, LineBreaksOfWhatIsPastedDoNotBreakIt) {
  const struct {
    const char* pasted;
    const char* shown;
  } cases[] = {{"https://example.org/a\nb/c\n", "https://example.org/ab/c"},
               {"\r\n  example.org \r\n", "example.org"},
               {"tide tables\nfor June", "tide tables for June"},
               {"tide\ttables", "tide tables"}};
  for (const auto& one : cases) {
    show();
    view().field().setText("");
    insert(view().field(), one.pasted);
    EXPECT_EQ(shown(), one.shown);
  }
}

TEST_F(CommandBarViewTest, ThePillOpensItWithTheAddressSelected) {
  const auto tab = sample.reading;
  pressPill();
  EXPECT_EQ(store().commandBar.peek(), CommandBarMode::CurrentTab);
  EXPECT_TRUE(entry().has_focus());
  EXPECT_EQ(shown(), tab->url.peek()->text());
  EXPECT_EQ(marked(), shown());
  EXPECT_FALSE(window->view().sidebar().get_can_focus());
  type("example.org/tides");
  act("activate");
  EXPECT_EQ(tab->url.peek()->text(), "https://example.org/tides");
  EXPECT_EQ(store().commandBar.peek(), std::nullopt);
}

TEST_F(CommandBarViewTest, TypingCompletesAndDeletingDoesNot) {
  show();
  const struct {
    const char* what;
    std::function<void()> act;
    const char* shown;
    const char* marked;
  } steps[] = {
      {"one letter", [&] { type("S"); }, "S", ""},
      {"a second", [&] { type("t"); }, "Strand-radio.example", "rand-radio.example"},
      {"the letter that stands there", [&] { type("r"); }, "Strand-radio.example",
       "and-radio.example"},
      {"deleting the completion", [&] { act("backspace"); }, "Str", ""},
      {"deleting a letter", [&] { act("backspace"); }, "St", ""},
      {"a letter that fits nothing", [&] { type("x"); }, "Stx", ""},
      {"several at once",
       [&] {
         view().field().setText("");
         type("kelp.ex");
       },
       "kelp.example", "ample"},
      {"a shorter text over a longer one",
       [&] {
         view().field().setText("https://an.address.of/many/letters");
         entry().select_region(0, -1);
         type("kelp.ex");
       },
       "kelp.example", "ample"},
      {"undo",
       [&] {
         gtk_widget_activate_action(GTK_WIDGET(entry().gobj()), "text.undo", nullptr);
         settleField();
       },
       "", ""},
      {"in front of the end",
       [&] {
         view().field().setText("elp.ex");
         entry().set_position(0);
         type("k");
       },
       "kelp.ex", ""},
  };
  for (const auto& step : steps) {
    step.act();
    EXPECT_EQ(shown(), step.shown) << step.what;
    EXPECT_EQ(marked(), step.marked) << step.what;
    EXPECT_EQ(view().bar()->text(), step.shown) << step.what;
  }
}

TEST_F(CommandBarViewTest, AnInputMethodIsLeftAlone) {
  show();
  g_signal_emit_by_name(entry().gobj(), "preedit-changed", "ら");
  type("strand");
  EXPECT_EQ(shown(), "strand");
  EXPECT_FALSE(press(GDK_KEY_Down));
  EXPECT_FALSE(press(GDK_KEY_Escape));
  EXPECT_NE(store().commandBar.peek(), std::nullopt);
  g_signal_emit_by_name(entry().gobj(), "preedit-changed", "");
  type("-");
  EXPECT_EQ(shown(), "strand-radio.example");
}

TEST_F(CommandBarViewTest, KeysMoveSubmitAndCancel) {
  show();
  type("tide");
  const auto last = view().list().rowCount() - 1;
  EXPECT_TRUE(press(GDK_KEY_Up));
  EXPECT_TRUE(view().list().row(last).has_css_class("selected"));
  EXPECT_FALSE(press(GDK_KEY_Tab));
  EXPECT_TRUE(press(GDK_KEY_Escape));
  EXPECT_EQ(store().commandBar.peek(), std::nullopt);
  EXPECT_EQ(view().bar(), nullptr);

  // A bar that a picked row asks for is a new one.
  show();
  type("2+2");
  publish(store().commandBar, std::nullopt);
  store().showCommandBar(CommandBarMode::CurrentTab);
  settle();
  EXPECT_EQ(shown(), sample.reading->url.peek()->text());
}

TEST_F(CommandBarViewTest, ThePointerChoosesPicksAndDismisses) {
  show();
  ASSERT_EQ(view().list().rowCount(), 6u);
  const auto [x, y] = middleOfRow(2);
  view().pointerMoved(x, y);
  EXPECT_EQ(view().bar()->selection.peek(), 0u) << "the bar came up below the pointer";
  view().pointerMoved(x + 3, y);
  EXPECT_EQ(view().bar()->selection.peek(), 2u);
  press(GDK_KEY_Down);
  view().pointerMoved(x + 3, y);
  EXPECT_EQ(view().bar()->selection.peek(), 3u) << "the pointer is at rest";

  view().pressed(x, y);
  view().released(middleOfRow(1).first, middleOfRow(1).second);
  EXPECT_NE(store().commandBar.peek(), std::nullopt) << "let go over another row";
  const auto picked = std::get<suggestion::Tab>(view().bar()->suggestions()[2]).tab;
  view().pressed(x, y);
  view().released(x, y);
  settle();
  EXPECT_EQ(space().selectedTab(), picked);
  EXPECT_EQ(store().commandBar.peek(), std::nullopt);

  show();
  view().pressed(5, 5);
  EXPECT_EQ(store().commandBar.peek(), std::nullopt);
}

}  // namespace
}  // namespace orvel::test
