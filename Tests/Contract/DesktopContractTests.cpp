#include "Tests/Contract/Contract.h"

namespace orvel::test {
namespace {

using testing::ElementsAre;

struct DesktopContract : testing::TestWithParam<Implementation> {
  const std::unique_ptr<DesktopStage> stage =
      GetParam() == Implementation::Fake ? makeFakeDesktopStage() : makeRealDesktopStage();
  const Desktop desktop = stage->desktop();
  bool until(const std::function<bool()>& condition) { return stage->until(condition); }
};

TEST_P(DesktopContract, TheClipboardHoldsTheLatestAndIsReadOnALaterTurn) {
  const auto text = [&] {
    std::optional<std::optional<std::string>> read;
    desktop.clipboard.getText([&](auto given) { read = given; });
    EXPECT_FALSE(read);
    EXPECT_TRUE(until([&] { return read.has_value(); }));
    return read.value_or(std::nullopt);
  };
  for (const char* copied : {"one", "zwei ünïcode 🎈", ""}) {
    desktop.clipboard.setText(copied);
    EXPECT_EQ(text(), copied);
  }
  desktop.clipboard.setImage(Image::make(1, 1, {1, 2, 3, 255}));
  EXPECT_EQ(text(), std::nullopt) << "a picture takes the text's place";
}

TEST_P(DesktopContract, AnAlertIsAnsweredOnceOnALaterTurn) {
  const Alert alert{.messageText = "Sure?",
                    .buttons = {"Yes", "Perhaps", "No"},
                    .fields = {{.label = "Name", .text = "Ada"}}};
  for (const std::optional<size_t> chosen : {std::optional<size_t>(0), {1}, {2}, {}}) {
    std::vector<AlertAnswer> answers;
    desktop.dialogs.showAlert(&stage->window(), alert,
                              [&](const AlertAnswer& given) { answers.push_back(given); });
    stage->pass();
    EXPECT_TRUE(answers.empty());
    chosen ? stage->choose(*chosen) : stage->dismiss();
    EXPECT_TRUE(until([&] { return !answers.empty(); }));
    stage->pass();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0].button, chosen);
    if (chosen) EXPECT_THAT(answers[0].fields, ElementsAre("Ada"));
  }
}

TEST_P(DesktopContract, AWindowIsShownAndHidden) {
  DesktopWindow& window = stage->window();
  for (const bool isClosed : {false, true}) {
    isClosed ? window.close() : window.hide();
    EXPECT_FALSE(window.isVisible());
    EXPECT_TRUE(until([&] { return !window.isActive(); }));
    window.present();
    EXPECT_TRUE(window.isVisible());
  }
  EXPECT_FALSE(window.isMinimized() || window.isFullscreen());
  for (const auto appearance : {WindowAppearance::Dark, WindowAppearance::Auto}) {
    window.setAppearance(appearance);
    EXPECT_EQ(window.appearance(), appearance);
  }
  EXPECT_FALSE(window.isTextEditorFocused());
  window.edit(EditingCommand::Paste);
  stage->focusField();
  EXPECT_TRUE(until([&] { return window.isTextEditorFocused(); }));
}

TEST_P(DesktopContract, ShortMemoryIsToldAsLongAsSomebodyListens) {
  int events = 0;
  auto listening = desktop.memoryPressure.observe([&] { ++events; });
  for (int again = 0; again < 2; ++again) stage->runShortOfMemory();
  listening.invalidate();
  stage->runShortOfMemory();
  EXPECT_EQ(events, 2);
}

TEST_P(DesktopContract, OperationsThatTheDesktopCannotDoAnswerToo) {
  std::vector<std::string> answers;
  const std::filesystem::path nowhere = "/nowhere/at all.txt";
  desktop.workspace.openFile(nowhere, [&](bool) { answers.emplace_back("file"); });
  desktop.workspace.makeDefaultBrowser([&](bool) { answers.emplace_back("default"); });
  desktop.hotKeys.registerSpace(
      {.control = true, .alt = true}, [] {}, [&](const auto&) { answers.emplace_back("key"); });
  desktop.systemSearch.deleteDomain("tabs", [&] { answers.emplace_back("search"); });
  desktop.systemSearch.deleteItems({"tab"}, [&] { answers.emplace_back("search"); });
  desktop.systemSearch.index({}, [&] { answers.emplace_back("search"); });
  EXPECT_THAT(answers, testing::IsEmpty()) << "a later turn";
  EXPECT_TRUE(until([&] { return answers.size() == 6; })) << testing::PrintToString(answers);
  EXPECT_FALSE(desktop.workspace.applicationToOpen(*URL::parse("nobody-opens:x")));
}

// The monitors, and what reaches the window behind them.

struct EventContract : DesktopContract {
  using Seen = std::vector<std::string>;

  // Notes each event under a name, and swallows as it is told.
  Observation watch(const std::string& name, std::function<bool(const InputEvent&)> swallows) {
    return desktop.events.install(
        [this, name, swallows](DesktopWindow& window, const InputEvent& event) {
          EXPECT_EQ(&window, &stage->window());
          if (const auto* key = std::get_if<KeyDown>(&event)) {
            const char* names[] = {"Key", "Tab", "Escape", "Return"};
            seen.push_back(name + (key->modifiers.control ? " Control-" : " ") +
                           names[static_cast<int>(key->key)]);
          } else if (const auto* change = std::get_if<ModifiersChanged>(&event)) {
            seen.push_back(name + (change->modifiers.control ? " Control" : " let go"));
          } else if (const auto* down = std::get_if<MouseDown>(&event)) {
            seen.push_back(fmt::format("{} {},{}", name, down->x, down->y));
          }
          return swallows(event) ? EventUse::Swallowed : EventUse::PassedOn;
        });
  }
  static bool never(const InputEvent&) { return false; }
  static bool isEscape(const InputEvent& event) {
    const auto* key = std::get_if<KeyDown>(&event);
    return key && key->key == KeyDown::Key::Escape;
  }
  // What the monitors saw of this.
  Seen after(const std::function<void()>& act, size_t count) {
    seen.clear();
    act();
    EXPECT_TRUE(until([&] { return seen.size() >= count; }));
    stage->pass();
    return seen;
  }

  Seen seen;
};

TEST_P(EventContract, MonitorsAreAskedInOrderAndMaySwallow) {
  const auto first = watch("1", never);
  auto second = watch("2", isEscape);
  const auto third = watch("3", never);
  EXPECT_THAT(after([&] { stage->press("a"); }, 3), ElementsAre("1 Key", "2 Key", "3 Key"));
  EXPECT_EQ(stage->eventsOfContent(), 1);
  EXPECT_THAT(after([&] { stage->press("Escape"); }, 2), ElementsAre("1 Escape", "2 Escape"));
  EXPECT_EQ(stage->eventsOfContent(), 1) << "swallowed";
  second.invalidate();
  EXPECT_THAT(after([&] { stage->press("Escape"); }, 2), ElementsAre("1 Escape", "3 Escape"));
  EXPECT_EQ(stage->eventsOfContent(), 2);
}

TEST_P(EventContract, TheKeysOfASwitcherAreToldWithTheReleaseOfControl) {
  const auto monitor = watch("", [](const InputEvent& event) {
    const auto* key = std::get_if<KeyDown>(&event);
    return key && key->key == KeyDown::Key::Tab && key->modifiers.control;
  });
  EXPECT_THAT(after([&] { stage->press("Control_L+Tab"); }, 3),
              ElementsAre(" Control", " Control-Tab", " let go"));
  EXPECT_EQ(stage->eventsOfContent(), 0);
}

TEST_P(EventContract, APressOfAButtonSaysWhere) {
  const auto monitor = watch("", [](const InputEvent& event) {
    const auto* down = std::get_if<MouseDown>(&event);
    return down && down->x > 100;
  });
  EXPECT_THAT(after([&] { stage->click(40, 30); }, 1), ElementsAre(" 40,30"));
  EXPECT_EQ(stage->eventsOfContent(), 1);
  EXPECT_THAT(after([&] { stage->click(140, 30); }, 1), ElementsAre(" 140,30"));
  EXPECT_EQ(stage->eventsOfContent(), 1) << "swallowed";
}

TEST_P(EventContract, AMonitorMayEndItselfAndInstallAnother) {
  Observation own;
  Observation other;
  own = desktop.events.install([&](DesktopWindow&, const InputEvent&) {
    own.invalidate();
    other = watch("new", never);
    return EventUse::PassedOn;
  });
  EXPECT_THAT(after([&] { stage->press("a"); }, 0), testing::IsEmpty());
  EXPECT_THAT(after([&] { stage->press("a"); }, 1), ElementsAre("new Key"));
}

// The last: the toolkit's own panel keeps the keyboard for some seconds after it has gone.
struct PanelContract : DesktopContract {};

TEST_P(PanelContract, AFilePanelIsAnsweredOnceOnALaterTurn) {
  using File = std::optional<std::filesystem::path>;
  std::vector<File> answers;
  const auto note = [&](const File& file) { answers.push_back(file); };
  const std::pair<std::function<void()>, File> cases[] = {
      {[&] { desktop.dialogs.showSavePanel(&stage->window(), {.proposedName = "a.pdf"}, note); },
       {}},
      {[&] {
         desktop.dialogs.showOpenPanel(&stage->window(), {.title = "Open"}, [&](const auto& files) {
           note(files ? File(files->at(0)) : std::nullopt);
         });
       },
       "/etc/hostname"}};
  for (const auto& [show, chosen] : cases) {
    answers.clear();
    show();
    EXPECT_TRUE(answers.empty());
    stage->chooseFile(chosen);
    EXPECT_TRUE(until([&] { return !answers.empty(); }));
    stage->pass();
    EXPECT_THAT(answers, ElementsAre(chosen));
  }
}

ORVEL_BOTH(DesktopContract);
ORVEL_BOTH(EventContract);
ORVEL_BOTH(PanelContract);

}  // namespace
}  // namespace orvel::test
