#include "Models/Commands/CommandTarget.h"
#include "Models/Commands/QuickBar.h"
#include "Models/Settings/Settings.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Store/ApplicationLifecycle.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageSearch.h"
#include "Models/Windows/Toasts.h"
#include "Models/Windows/WindowChrome.h"
#include "Tests/Kit/Publish.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

struct Store : ModelTest {
  Store() { world.interface.shown = &world.window; }
};

// Toasts

TEST_F(Store, AToastOfTheSameKindIsUpdatedInPlaceAndOfAnotherIsNew) {
  const struct {
    ToastOptions first, second;
    bool isSame;
    Duration lasts;
  } cases[] = {{{.symbol = "a"}, {.symbol = "a"}, true, 1600ms},
               {{.symbol = "a"}, {.symbol = "b"}, false, 1600ms},
               {{}, {.symbol = "a"}, false, 1600ms},
               {{}, {.undo = [] {}}, false, 4s},
               {{.undo = [] {}}, {}, false, 1600ms},
               {{}, {.undo = [] {}, .lasts = 10s}, false, 10s}};
  for (const auto& test : cases) {
    store().showToast("one", test.first);
    const UUID id = store().toasts.toast.peek()->id;
    advance(1s);
    store().showToast("two", test.second);
    EXPECT_EQ(store().toasts.toast.peek()->id == id, test.isSame);
    EXPECT_TRUE(Toast(*store().toasts.toast.peek()) == store().toasts.toast.peek())
        << "an equal one wakes nobody";
    advance(test.lasts - 1ms);
    EXPECT_EQ(toast(), "two") << "its time begins anew";
    advance(1ms);
    EXPECT_EQ(toast(), "");
  }
}

TEST_F(Store, UndoRunsOnceAfterTheToastIsGone) {
  std::vector<std::string> shownAtUndo;
  store().showToast("text", {.undo = [&] { shownAtUndo.push_back(toast()); }});
  store().toasts.undoToast();
  store().toasts.undoToast();
  EXPECT_THAT(shownAtUndo, ElementsAre(""));
}

// Sidebar and window

TEST_F(Store, APendingPeekSurvivesAReportThatNoneIsWanted) {
  store().chrome.toggleSidebar();
  store().chrome.setSidebarPeeking(true);
  advance(60ms);
  store().chrome.setSidebarPeeking(false);
  advance(59ms);
  EXPECT_FALSE(store().chrome.isSidebarPeeking);
  advance(1ms);
  EXPECT_TRUE(store().chrome.isSidebarPeeking);
  EXPECT_FALSE(world.window.hidden[WindowButton::Close]);
  store().chrome.setSidebarPeeking(false);
  advance(100ms);
  store().chrome.setSidebarPeeking(true);
  advance(1s);
  EXPECT_TRUE(store().chrome.isSidebarPeeking) << "the pointer came back in time";
  store().chrome.setSidebarPeeking(false);
  advance(280ms);
  EXPECT_FALSE(store().chrome.isSidebarPeeking);
}

TEST_F(Store, TogglingAPeekingSidebarDocksItInTwoTurns) {
  store().chrome.toggleSidebar();
  store().chrome.setSidebarPeeking(true);
  advance(1s);
  store().chrome.toggleSidebar();
  EXPECT_TRUE(store().chrome.sidebarDocksFromPeek);
  EXPECT_FALSE(store().chrome.isSidebarVisible);
  settle();
  EXPECT_TRUE(store().chrome.isSidebarVisible);
  EXPECT_FALSE(store().chrome.isSidebarPeeking);
  EXPECT_FALSE(store().chrome.sidebarDocksFromPeek);
  store().chrome.toggleSidebar();
  store().chrome.setSidebarPeeking(true);
  store().chrome.toggleSidebar();
  advance(1s);
  EXPECT_FALSE(store().chrome.isSidebarPeeking) << "it has docked meanwhile";
}

TEST_F(Store, WindowButtonsFadeBeforeTheyHide) {
  store().chrome.toggleSidebar();
  EXPECT_EQ(world.window.alpha[WindowButton::Maximize], 0);
  EXPECT_DOUBLE_EQ(world.window.lastDuration, 0.18);
  EXPECT_FALSE(world.window.hidden[WindowButton::Maximize]);
  advance(180ms);
  EXPECT_TRUE(world.window.hidden[WindowButton::Maximize]);
  store().chrome.toggleSidebar();
  EXPECT_FALSE(world.window.hidden[WindowButton::Maximize]);
  EXPECT_EQ(world.window.alpha[WindowButton::Maximize], 1);
  store().chrome.toggleSidebar();
  store().chrome.toggleSidebar();
  advance(1s);
  EXPECT_FALSE(world.window.hidden[WindowButton::Maximize]) << "shown again before the fade ended";
  publish(store().chrome.isSidebarVisible, false);
  store().scheduleSave();
  store().chrome.updateWindowChrome(WindowChrome::Motion::AtOnce);
  EXPECT_TRUE(world.window.hidden[WindowButton::Maximize]);
  EXPECT_EQ(world.window.lastDuration, 0);
}

TEST_F(Store, TheWindowTakesTheActiveSpacesAppearanceOnce) {
  space().appearance = Space::Appearance::Dark;
  store().scheduleSave();
  store().chrome.updateWindowAppearance();
  store().chrome.updateWindowAppearance();
  EXPECT_EQ(world.window.current, WindowAppearance::Dark);
  EXPECT_EQ(world.window.appearanceCount, 1);
  publish(store().spaceEditing.previewAppearance, Space::Appearance::Light);
  store().chrome.updateWindowAppearance();
  EXPECT_EQ(world.window.current, WindowAppearance::Light);
  publish(store().spaceEditing.previewAppearance, std::nullopt);
  store().setActiveSpaceID(UUID::random());
  EXPECT_EQ(world.window.current, WindowAppearance::Auto);
}

TEST_F(Store, FocusLeavesWhoeverTypesAlone) {
  const TabRef tab = load("https://a/");
  const int before = world.view(tab)->focusCount;
  for (const bool isEditing : {true, false}) {
    world.window.isEditing = isEditing;
    store().dismissCommandBar();
    settle();
    EXPECT_EQ(world.view(tab)->focusCount, before + !isEditing);
  }
}

// The command bar's choices

TEST_F(Store, ChoicesOpenByMode) {
  using enum CommandBarMode;
  const auto bar = [&](CommandBarMode mode, const Suggestion& suggestion) {
    store().showCommandBar(mode);
    store().perform(suggestion, mode);
    EXPECT_EQ(store().commandBar.peek().has_value(), mode == Quick);
    return urls(space().today);
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
  int ran = 0;
  PaletteCommand command;
  command.perform = [&] { ++ran; };
  world.window.presentCount = 0;
  store().perform(suggestion::Command{command}, CommandBarMode::Quick);
  EXPECT_EQ(ran, 1);
  EXPECT_EQ(world.window.presentCount, 1);
  store().perform(suggestion::Answer{"6*7", "42"}, CommandBarMode::Quick);
  EXPECT_EQ(world.desktop.clipboardText, "42");
  EXPECT_EQ(toast(), "");
  store().perform(suggestion::Answer{"6*7", "42"}, CommandBarMode::NewTab);
  EXPECT_EQ(toast(), "Copied 42");
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

struct Lifecycle : Store {
  int shown = 0;
  ApplicationLifecycle lifecycle{world.store, {.makeWindowController = [this] {
                                   return std::make_unique<TestWindowController>(world.window,
                                                                                 shown);
                                 }}};
};

TEST_F(Lifecycle, LinksFromOutsideBringTheWindowOnlyWhenItIsWanted) {
  world.interface.makeLittle = [this](const TabRef& tab) {
    return std::make_shared<FakeLittleWindow>(store(), tab);
  };
  lifecycle.open({{address("https://a/")}});
  EXPECT_EQ(shown, 1) << "the program has no window yet";
  ASSERT_EQ(store().littleWindows.windows().size(), 1u);
  lifecycle.open({{address("https://b/")}});
  EXPECT_EQ(shown, 1) << "a little window took the link";
  lifecycle.handleReopen(ApplicationLifecycle::VisibleWindows::Some);
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(store().target.commandTab()->url.peek(), address("https://a/"));
  store().target.closeSelectedTab();
  store().close(store().littleWindows.windows().front()->tab());
  EXPECT_THAT(store().littleWindows.windows(), IsEmpty());
  const SpaceRef home = store().activeSpace();
  store().spaceEditing.commit({.name = "Away"});
  store().settings.linkRoutes =
      std::vector<LinkRoute>{{.pattern = "routed.org", .spaceID = UUID::random()},
                             {.pattern = "routed.org", .spaceID = home->id}};
  constexpr auto kSupplied = SchemeSource::Supplied;
  lifecycle.open({{address("https://c/"), kSupplied}, {address("https://routed.org/"), kSupplied}});
  EXPECT_EQ(shown, 2);
  EXPECT_THAT(urls(home->today), ElementsAre("https://routed.org/"));
  settle();
  for (const TabRef& tab :
       {home->today.peek().front(), store().littleWindows.windows().back()->tab()})
    EXPECT_EQ(world.view(tab)->requests.back().schemeSource, kSupplied) << tab->displayTitle();
}

// The key that opens the command bar from everywhere, and finding in the page

struct QuickBarKeys : Store {
  void choose(std::optional<QuickBarKey> key) {
    store().settings.quickBarKey = key;
    store().quickBar.applyQuickBarKey();
  }
};

TEST_F(QuickBarKeys, ATakenKeyIsToldAndStaysChosen) {
  world.desktop.isHotKeyTaken = true;
  choose(QuickBarKey::ShiftOptionSpace);
  settle();
  EXPECT_TRUE(store().quickBar.isQuickBarKeyTaken.peek());
  EXPECT_EQ(store().settings.quickBarKey.peek(), QuickBarKey::ShiftOptionSpace);

  // The late answer to one key says nothing of the next choice.
  choose(QuickBarKey::OptionSpace);
  choose(std::nullopt);
  settle();
  EXPECT_FALSE(store().quickBar.isQuickBarKeyTaken.peek());
}

TEST_F(QuickBarKeys, TheKeyOpensTheBarAndClosesItInFront) {
  choose(QuickBarKey::ControlShiftSpace);
  settle();
  EXPECT_FALSE(store().quickBar.isQuickBarKeyTaken.peek());
  world.desktop.hotKeyPressed();
  EXPECT_EQ(store().commandBar.peek(), CommandBarMode::NewTab);
  EXPECT_EQ(world.window.presentCount, 1);
  world.desktop.hotKeyPressed();
  EXPECT_EQ(store().commandBar.peek(), std::nullopt);
}

TEST_F(Store, ForgetsAFindThatIsAnsweredAfterItsEnd) {
  const TabRef tab = load("https://a/");
  world.view(tab)->pageText = "late words";
  const auto search = [&] { store().pageSearch.findNext(BrowserTab::FindDirection::Forwards); };
  search();
  settle();
  EXPECT_FALSE(store().pageSearch.find.peek()) << "nothing is shown, nothing is searched";
  store().pageSearch.showFindBar();
  store().pageSearch.setQuery("late");
  search();
  store().pageSearch.hideFindBar();
  settle();
  EXPECT_FALSE(store().pageSearch.find.peek());
  EXPECT_FALSE(world.view(tab)->hasMarks) << "it marked the page after the bar had gone";
  // An answer tells nothing of another text, nor of a bar that was opened since.
  const std::function<void()> overtaking[] = {[&] {
                                                store().pageSearch.setQuery("");
                                                search();
                                              },
                                              [&] {
                                                store().pageSearch.hideFindBar();
                                                store().pageSearch.showFindBar();
                                              }};
  for (const auto& overtake : overtaking) {
    store().pageSearch.showFindBar();
    store().pageSearch.setQuery("nowhere");
    search();
    overtake();
    settle();
    EXPECT_EQ(store().pageSearch.find.peek()->matchFound, std::nullopt);
  }
  store().pageSearch.hideFindBar();
  store().pageSearch.showFindBar();
  store().pageSearch.setQuery("late");
  search();
  settle();
  EXPECT_TRUE(world.view(tab)->hasMarks);
  const TabRef other = world.open("https://two.test/");
  store().pageSearch.hideFindBar();
  EXPECT_FALSE(world.view(tab)->hasMarks) << "the page that was searched";
  store().close(other);
  store().close(tab);
  store().pageSearch.showFindBar();
  EXPECT_FALSE(store().pageSearch.find.peek()) << "without a tab there is nothing to search";
}

TEST_F(Store, AFinishedDownloadIsTold) {
  world.services.downloads->onFinish("file.pdf");
  EXPECT_EQ(toast(), "Downloaded file.pdf");
  const auto downloads = world.services.downloads;
  world.store.reset();
  settle();
  downloads->onFinish("late.pdf");
}

}  // namespace
}  // namespace orvel::test
