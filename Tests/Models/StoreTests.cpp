#include "Models/Commands/QuickBar.h"
#include "Models/Settings/Settings.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Store/ApplicationLifecycle.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Tab/PageSearch.h"
#include "Models/Windows/Toasts.h"
#include "Models/Windows/WindowChrome.h"
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
               {{}, {.undo = [] {}}, false, 4s},
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
}

TEST_F(Store, WindowButtonsFadeBeforeTheyHide) {
  auto& isHidden = world.window.hidden[WindowButton::Maximize];
  store().chrome.toggleSidebar();
  EXPECT_FALSE(isHidden);
  advance(180ms);
  EXPECT_TRUE(isHidden);
  for (int i = 0; i < 3; ++i) store().chrome.toggleSidebar();
  advance(1s);
  EXPECT_FALSE(isHidden) << "shown again before the fade ended";
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
  // An answer tells nothing of a bar that was opened since.
  store().pageSearch.showFindBar();
  store().pageSearch.setQuery("nowhere");
  search();
  store().pageSearch.hideFindBar();
  store().pageSearch.showFindBar();
  settle();
  EXPECT_EQ(store().pageSearch.find.peek()->matchFound, std::nullopt);
  store().pageSearch.setQuery("late");
  search();
  settle();
  EXPECT_TRUE(world.view(tab)->hasMarks);
  world.open("https://two.test/");
  store().pageSearch.hideFindBar();
  EXPECT_FALSE(world.view(tab)->hasMarks) << "the page that was searched";
}

}  // namespace
}  // namespace orvel::test
