#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Models/ApplicationLifecycle.h"
#include "Tests/Models/World.h"

namespace orvel::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Store : public testing::Test {
 protected:
  Store() {
    world.launch();
    store().window = &world.window;
  }
  BrowserStore& store() { return *world.store; }
  std::string toastText() {
    const auto& toast = store().toast.peek();
    return toast ? toast->message : "";
  }
  World world;
};

// Toasts

TEST_F(Store, AToastOfTheSameKindIsUpdatedInPlaceAndLivesOn) {
  store().showToast("one", {.symbol = "link"});
  const UUID id = store().toast.peek()->id;
  world.scheduler.advance(1s);
  store().showToast("two", {.symbol = "link"});
  EXPECT_EQ(store().toast.peek()->id, id);
  world.scheduler.advance(1599ms);
  EXPECT_EQ(toastText(), "two");
  world.scheduler.advance(1ms);
  EXPECT_EQ(toastText(), "");
}

TEST_F(Store, ToastsOfAnotherKindAreNew) {
  const struct {
    BrowserStore::ToastOptions first, second;
  } cases[] = {{{.symbol = "a"}, {.symbol = "b"}},
               {{}, {.symbol = "a"}},
               {{}, {.undo = [] {}}},
               {{.undo = [] {}}, {}}};
  for (const auto& test : cases) {
    store().showToast("one", test.first);
    const UUID id = store().toast.peek()->id;
    store().showToast("two", test.second);
    EXPECT_NE(store().toast.peek()->id, id);
    store().toast = std::nullopt;
  }
}

TEST_F(Store, ToastsLastByWhatTheyOffer) {
  const struct {
    BrowserStore::ToastOptions options;
    Duration lasts;
  } cases[] = {{{}, 1600ms}, {{.undo = [] {}}, 4s}, {{.undo = [] {}, .lasts = 10s}, 10s}};
  for (const auto& test : cases) {
    store().showToast("text", test.options);
    world.scheduler.advance(test.lasts - 1ms);
    EXPECT_EQ(toastText(), "text");
    world.scheduler.advance(1ms);
    EXPECT_EQ(toastText(), "");
  }
}

TEST_F(Store, UndoRunsOnceAfterTheToastIsGone) {
  int undone = 0;
  store().showToast("text", {.undo = [&] {
                      ++undone;
                      EXPECT_EQ(toastText(), "");
                    }});
  store().undoToast();
  store().undoToast();
  EXPECT_EQ(undone, 1);
}

TEST_F(Store, EqualValuesWakeNobody) {
  int runs = 0;
  store().showToast("text");
  const Effect watcher = effect([&] {
    ++runs;
    (void)store().toast.get();
    (void)store().sidebarWidth.get();
  });
  store().toast = Toast(*store().toast.peek());
  store().setSidebarWidth(248);
  world.scheduler.turn();
  EXPECT_EQ(runs, 1);
}

// Sidebar and window

TEST_F(Store, APendingPeekSurvivesAReportThatNoneIsWanted) {
  store().toggleSidebar();
  store().setSidebarPeeking(true);
  world.scheduler.advance(60ms);
  store().setSidebarPeeking(false);
  world.scheduler.advance(59ms);
  EXPECT_FALSE(store().isSidebarPeeking);
  world.scheduler.advance(1ms);
  EXPECT_TRUE(store().isSidebarPeeking);
  EXPECT_FALSE(world.window.hidden[WindowButton::Close]);
  store().setSidebarPeeking(false);
  world.scheduler.advance(100ms);
  store().setSidebarPeeking(true);
  world.scheduler.advance(1s);
  EXPECT_TRUE(store().isSidebarPeeking) << "the pointer came back in time";
  store().setSidebarPeeking(false);
  world.scheduler.advance(280ms);
  EXPECT_FALSE(store().isSidebarPeeking);
}

TEST_F(Store, TogglingAPeekingSidebarDocksItInTwoTurns) {
  store().toggleSidebar();
  store().setSidebarPeeking(true);
  world.scheduler.advance(1s);
  store().toggleSidebar();
  EXPECT_TRUE(store().sidebarDocksFromPeek);
  EXPECT_FALSE(store().isSidebarVisible);
  world.scheduler.settle();
  EXPECT_TRUE(store().isSidebarVisible);
  EXPECT_FALSE(store().isSidebarPeeking);
  EXPECT_FALSE(store().sidebarDocksFromPeek);
}

TEST_F(Store, WindowButtonsFadeBeforeTheyHide) {
  store().toggleSidebar();
  EXPECT_EQ(world.window.alpha[WindowButton::Zoom], 0);
  EXPECT_DOUBLE_EQ(world.window.lastDuration, 0.18);
  EXPECT_FALSE(world.window.hidden[WindowButton::Zoom]);
  world.scheduler.advance(180ms);
  EXPECT_TRUE(world.window.hidden[WindowButton::Zoom]);
  store().toggleSidebar();
  EXPECT_FALSE(world.window.hidden[WindowButton::Zoom]);
  EXPECT_EQ(world.window.alpha[WindowButton::Zoom], 1);
  store().toggleSidebar();
  store().toggleSidebar();
  world.scheduler.advance(1s);
  EXPECT_FALSE(world.window.hidden[WindowButton::Zoom]) << "shown again before the fade ended";
  store().isSidebarVisible = false;
  store().updateWindowChrome(BrowserStore::ChromeMotion::AtOnce);
  EXPECT_TRUE(world.window.hidden[WindowButton::Zoom]);
  EXPECT_EQ(world.window.lastDuration, 0);
}

TEST_F(Store, TheWindowTakesTheActiveSpacesAppearanceOnce) {
  world.space().appearance = Space::Appearance::Dark;
  store().updateWindowAppearance();
  store().updateWindowAppearance();
  EXPECT_EQ(world.window.current, WindowAppearance::Dark);
  EXPECT_EQ(world.window.appearanceCount, 1);
  store().previewAppearance = Space::Appearance::Light;
  store().updateWindowAppearance();
  EXPECT_EQ(world.window.current, WindowAppearance::Light);
  store().previewAppearance = std::nullopt;
  store().setActiveSpaceID(UUID::random());
  EXPECT_EQ(world.window.current, WindowAppearance::Auto);
}

TEST_F(Store, FocusLeavesWhoeverTypesAlone) {
  const TabRef tab = world.open("https://a/");
  world.scheduler.settle();
  const int before = world.view(tab)->focusCount;
  world.window.isEditing = true;
  store().dismissCommandBar();
  world.scheduler.settle();
  EXPECT_EQ(world.view(tab)->focusCount, before);
  world.window.isEditing = false;
  store().dismissCommandBar();
  world.scheduler.settle();
  EXPECT_EQ(world.view(tab)->focusCount, before + 1);
}

// The command bar's choices

TEST_F(Store, ChoicesOpenByMode) {
  using enum CommandBarMode;
  const auto bar = [&](CommandBarMode mode, const Suggestion& suggestion) {
    store().showCommandBar(mode);
    store().perform(suggestion, mode);
    EXPECT_EQ(store().commandBar.peek().has_value(), mode == Quick);
    return urls(world.space().today);
  };
  EXPECT_THAT(bar(CurrentTab, suggestion::Address{address("https://a/")}),
              ElementsAre("https://a/"));
  EXPECT_THAT(bar(CurrentTab, suggestion::Search{"two words"}), ElementsAre(HasSubstr("two")));
  const SearchShortcut shortcut{.keyword = "w", .name = "W", .urlTemplate = "https://w/%s"};
  EXPECT_THAT(bar(NewTab, suggestion::Shortcut{shortcut, "x"}),
              ElementsAre("https://w/x", HasSubstr("two")));
  EXPECT_THAT(bar(NewTab, suggestion::History{{address("https://h/"), "H", 1, Date()}}),
              ElementsAre("https://h/", "https://w/x", HasSubstr("two")));
  EXPECT_EQ(bar(NewTab, suggestion::Search{"no \xff text"}).size(), 3u)
      << "without an address the bar goes and nothing opens";
  const int activations = world.desktop.activateCount;
  EXPECT_EQ(bar(Quick, suggestion::Address{address("https://q/")}).size(), 4u);
  EXPECT_EQ(world.desktop.activateCount, activations + 1);
}

TEST_F(Store, ChoicesActOnWhatIsThere) {
  const TabRef first = world.open("https://a/");
  world.open("https://b/");
  store().perform(suggestion::Tab{first}, CommandBarMode::NewTab);
  EXPECT_EQ(world.space().selectedTab(), first);
  int ran = 0;
  PaletteCommand command;
  command.perform = [&] { ++ran; };
  world.window.frontCount = 0;
  store().perform(suggestion::Command{command}, CommandBarMode::Quick);
  EXPECT_EQ(ran, 1);
  EXPECT_EQ(world.window.frontCount, 1);
  store().perform(suggestion::Answer{"6*7", "42"}, CommandBarMode::Quick);
  EXPECT_EQ(world.desktop.pasteboardText, "42");
  EXPECT_EQ(toastText(), "");
  store().perform(suggestion::Answer{"6*7", "42"}, CommandBarMode::NewTab);
  EXPECT_EQ(toastText(), "Copied 42");
}

// Beginning and end

class TestWindowController final : public MainWindowController {
 public:
  TestWindowController(FakeWindow& window, int& shown) : window_(window), shown_(shown) {}
  void show() override { ++shown_; }
  DesktopWindow& window() override { return window_; }

 private:
  FakeWindow& window_;
  int& shown_;
};

class Lifecycle : public Store {
 protected:
  ApplicationLifecycle::Steps steps() {
    const auto note = [this](const char* step) { return [this, step] { done.push_back(step); }; };
    return {.appVersion = "1.2",
            .systemVersion = "Test 1",
            .subscribeDiagnostics = note("diagnostics"),
            .installMainMenu = note("menu"),
            .makeWindowController =
                [this] {
                  done.push_back("window");
                  return std::make_unique<TestWindowController>(world.window, shown);
                },
            .startUpdates = note("updates"),
            .installUpdateIfReady = note("install")};
  }
  std::vector<std::string> done;
  int shown = 0;
  ApplicationLifecycle lifecycle{world.store, steps()};
};

TEST_F(Lifecycle, LaunchesInOrderAndKeepsItsWindow) {
  lifecycle.didFinishLaunching();
  EXPECT_THAT(done, ElementsAre("diagnostics", "menu", "window", "updates"));
  EXPECT_EQ(world.desktop.activateCount, 1);
  lifecycle.showWindow();
  lifecycle.handleReopen(ApplicationLifecycle::VisibleWindows::Some);
  EXPECT_EQ(shown, 2);
  EXPECT_EQ(world.desktop.activateCount, 2);
  lifecycle.handleReopen(ApplicationLifecycle::VisibleWindows::None);
  EXPECT_EQ(shown, 3);
  EXPECT_EQ(world.window.frontCount, 3);
  EXPECT_THAT(done, testing::SizeIs(4));
  EXPECT_FALSE(lifecycle.continueActivity("unknown"));
}

class TestLittleWindow final : public LittleWindow {
 public:
  TestLittleWindow(BrowserStore& store, TabRef tab) : store_(store), tab_(std::move(tab)) {}
  const TabRef& tab() const override { return tab_; }
  bool isKey() const override { return isKeyWindow; }
  void promote() override {}
  void close() override {
    tab_->isDiscarded = true;
    tab_->teardown();
    store_.littleWindowDidClose(*this);
  }
  bool isKeyWindow = true;

 private:
  BrowserStore& store_;
  TabRef tab_;
};

TEST_F(Lifecycle, LinksFromOutsideBringTheWindowOnlyWhenItIsWanted) {
  store().makeLittleWindow = [this](const TabRef& tab) {
    return std::make_shared<TestLittleWindow>(store(), tab);
  };
  lifecycle.open({address("https://a/")});
  EXPECT_EQ(shown, 1) << "the program has no window yet";
  ASSERT_EQ(store().littleWindows.size(), 1u);
  lifecycle.open({address("https://b/")});
  EXPECT_EQ(shown, 1) << "a little window took the link";
  EXPECT_EQ(store().commandTab()->url.peek(), address("https://a/"));
  store().closeSelectedTab();
  store().close(store().littleWindows.front()->tab());
  EXPECT_THAT(store().littleWindows, IsEmpty());
  store().settings.linkRoutes =
      std::vector<LinkRoute>{{.pattern = "routed.org", .spaceID = UUID::random()},
                             {.pattern = "routed.org", .spaceID = world.space().id}};
  lifecycle.open({address("https://c/"), address("https://routed.org/")});
  EXPECT_EQ(shown, 2);
  EXPECT_THAT(urls(world.space().today), ElementsAre("https://routed.org/"));
}

TEST_F(Lifecycle, TheEndSavesWhatIsLessThanASecondOld) {
  const TabRef tab = world.open("https://last/");
  world.scheduler.settle();
  lifecycle.willTerminate();
  EXPECT_THAT(world.sessionFile(), HasSubstr("https://last/"));
  EXPECT_THAT(world.file("TabStates/" + tab->id.text() + ".state"), HasSubstr("https://last/"));
  EXPECT_THAT(done, ElementsAre("install"));
}

TEST_F(Store, AFinishedDownloadIsTold) {
  world.services.downloads->onFinish("file.pdf");
  EXPECT_EQ(toastText(), "Downloaded file.pdf");
  const auto downloads = world.services.downloads;
  world.store.reset();
  world.scheduler.settle();
  downloads->onFinish("late.pdf");
}

}  // namespace
}  // namespace orvel::test
