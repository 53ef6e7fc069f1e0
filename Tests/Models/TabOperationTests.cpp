#include <regex>

#include "Models/CommandBar/PickedChoices.h"
#include "Models/Commands/CommandTarget.h"
#include "Models/Sidebar/CopiedLink.h"
#include "Models/Sidebar/Folders.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Tab/Peek.h"
#include "Models/Windows/LittleWindows.h"
#include "Models/Windows/Toasts.h"
#include "Models/Windows/WindowChrome.h"
#include "Tests/Kit/Publish.h"
#include "Tests/Models/ModelTest.h"

namespace orvel::test {
namespace {

struct TabOperations : ModelTest {
  // Opens a, b, c, ... so that they stand in this order.
  std::vector<TabRef> openTabs(size_t count) {
    std::vector<TabRef> tabs(count);
    for (size_t i = count; i-- > 0;)
      tabs[i] = world.open("https://" + std::string(1, static_cast<char>('a' + i)) + "/", false);
    return tabs;
  }
  // Whether a save comes within its second.
  bool isSavePending() {
    const std::string before = world.sessionFile();
    advance(1100ms);
    return world.sessionFile() != before;
  }
};

TEST_F(TabOperations, ClearingTodayCanBeUndoneWithTheTabsAlive) {
  store().clearToday(store().activeSpace());
  EXPECT_FALSE(store().toasts.toast.peek());
  world.desktop.isMotionOn = true;
  const auto tabs = openTabs(3);
  store().select(tabs[1]);
  const auto view = tabs[1]->liveWebView();
  store().clearToday(store().activeSpace());
  EXPECT_EQ(toast(), "Closed 3 tabs");
  EXPECT_EQ(store().archive.closedTabs.peek().size(), 3u);
  EXPECT_EQ(selected(), nullptr);
  world.open("https://new/", false);
  store().toasts.undoToast();
  advance(1s);
  EXPECT_THAT(urls(space().today),
              ElementsAre("https://a/", "https://b/", "https://c/", "https://new/"));
  EXPECT_THAT(store().archive.closedTabs.peek(), IsEmpty());
  EXPECT_EQ(selected(), nullptr);
  EXPECT_EQ(tabs[1]->liveWebView(), view) << "an undo in time finds the page alive";
  store().clearToday(store().activeSpace());
  advance(1s);
  EXPECT_TRUE(tabs[1]->pageState.saved() && !tabs[1]->liveWebView() && !tabs[1]->isDiscarded);
}

// A menu, a row on its way out or a list of commands may outlive its space.
TEST_F(TabOperations, ASpaceThatHasGoneTakesNothing) {
  const auto tabs = openTabs(1);
  const SpaceRef home = store().activeSpace();
  store().spaceEditing.commit({.name = "Gone", .profileID = home->profile->id});
  const SpaceRef gone = store().activeSpace();
  const TabRef old = world.open("https://old/");
  store().clearToday(gone);
  store().spaceEditing.deleteSpace(gone);
  publish(store().archive.closedTabs, {});
  world.told.clear();
  store().switching.switchTo(gone);
  store().select(old, gone);
  store().move(tabs[0], TodayDestination{}, gone);
  store().clearToday(gone);
  store().toasts.undoToast();
  EXPECT_EQ(store().activeSpaceID.get(), home->id);
  EXPECT_THAT(home->today.peek(), ElementsAre(tabs[0]));
  EXPECT_THAT(world.told, IsEmpty());
  store().openTab(address("https://x/"), {.in = gone});
  EXPECT_THAT(urls(home->today), ElementsAre("https://x/", "https://a/"));
}

TEST_F(TabOperations, ATabThatHasClosedMeanwhileIsNotSelected) {
  const auto tabs = openTabs(2);
  store().select(tabs[0]);
  store().close(tabs[1]);
  store().select(tabs[1]);
  EXPECT_EQ(selected(), tabs[0]);
  store().spaceEditing.commit({.name = "Second"});
  store().select(tabs[0], store().activeSpace());
  EXPECT_EQ(selected(), nullptr) << "not in that space";
}

TEST_F(TabOperations, WhatTheyWorkOnMayStandInTheListThatTheyChange) {
  openTabs(6);
  const auto& today = space().today.peek();
  store().close(today.front());
  store().move(today.front(), PinnedDestination{});
  store().togglePin(today.front());
  store().folders.newFolder(today.front());
  store().select(today.front());
  EXPECT_EQ(selected(), today.front());
  publish(store().archive.records,
          std::vector{ArchivedTabRecord{{.id = UUID::random()}, UUID::random(), {}}});
  store().archive.reopen(store().archive.records.peek().front());
  store().folders.deleteFolder(std::get<FolderRef>(space().pinned.peek().front()));
  EXPECT_EQ(today.size(), 4u);
  store().spaceEditing.commit({.name = "Second"});
  store().switching.switchTo(store().spaces.peek().front());
  store().spaceEditing.deleteSpace(store().spaces.peek().front());
  EXPECT_EQ(space().name.peek(), "Second");
}

TEST_F(TabOperations, ATabStaysWithItsProfile) {
  const auto tabs = openTabs(1);
  const SpaceRef home = store().activeSpace();
  store().spaceEditing.commit({.name = "Other profile"});
  const SpaceRef other = store().activeSpace();
  const std::function<void()> moves[] = {[&] { store().move(tabs[0], TodayDestination{}, other); },
                                         [&] { store().move(tabs[0], PinnedDestination{}); },
                                         [&] { store().move(tabs[0], FavoritesDestination{}); },
                                         [&] { store().togglePin(tabs[0]); }};
  for (const auto& move : moves) {
    move();
    EXPECT_THAT(home->today.peek(), ElementsAre(tabs[0]));
    EXPECT_FALSE(tabs[0]->pinnedURL.peek() || store().toasts.toast.peek());
  }
  const auto gone = std::make_shared<Folder>(UUID::random(), "Gone", Folder::Expansion::Expanded);
  store().move(tabs[0], PinnedDestination{gone, std::nullopt}, home);
  EXPECT_THAT(home->today.peek(), ElementsAre(tabs[0])) << "a folder that has gone";
  store().move(tabs[0], FavoritesDestination{}, home);
  store().openTab(address("https://x/"), {.after = tabs[0], .select = false});
  EXPECT_THAT(urls(home->today), ElementsAre("https://x/"));
}

TEST_F(TabOperations, MovesKeepSetAndClearThePin) {
  const auto tabs = openTabs(3);
  store().move(tabs[0], FavoritesDestination{});
  EXPECT_EQ(tabs[0]->pinnedURL.peek(), address("https://a/"));
  publish(tabs[0]->url, address("https://wandered/"));
  store().move(tabs[0], PinnedDestination{});
  EXPECT_EQ(tabs[0]->pinnedURL.peek(), address("https://a/")) << "kept between pinned lists";
  store().move(tabs[1], PinnedDestination{nullptr, tabs[0]->id});
  store().move(tabs[2], PinnedDestination{nullptr, UUID::random()});
  EXPECT_THAT(urls(tabsOf(space().pinned)),
              ElementsAre("https://b/", "https://wandered/", "https://c/"))
      << "in front of a member, at the end for an unknown one";
  for (const TabRef& tab : {tabs[1], tabs[0]}) store().move(tab, TodayDestination{});
  EXPECT_FALSE(tabs[0]->pinnedURL.peek());
  advance(2s);
  const auto before = space().today.peek();
  store().move(tabs[0], TodayDestination{tabs[0]->id});
  EXPECT_EQ(space().today.peek(), before);
  EXPECT_FALSE(isSavePending()) << "dropping a tab in front of itself is no move";
  store().close(tabs[0]);
  store().move(tabs[0], PinnedDestination{});
  EXPECT_FALSE(store().placeOf(*tabs[0])) << "closed for good";
}

TEST_F(TabOperations, PinningTogglesAndItsUndoRestoresPlaceAndAddress) {
  const auto tabs = openTabs(3);
  store().togglePin(tabs[1]);
  EXPECT_EQ(toast(), "Pinned to Personal");
  store().toasts.undoToast();
  EXPECT_THAT(urls(space().today), ElementsAre("https://a/", "https://b/", "https://c/"));
  EXPECT_FALSE(tabs[1]->pinnedURL.peek());

  store().move(tabs[1], FavoritesDestination{});
  publish(tabs[1]->url, address("https://wandered/"));
  store().togglePin(tabs[1]);
  EXPECT_EQ(toast(), "Moved to Today");
  store().toasts.undoToast();
  EXPECT_THAT(space().profile->favorites.peek(), ElementsAre(tabs[1]));
  EXPECT_EQ(tabs[1]->pinnedURL.peek(), address("https://b/"));

  store().folders.newFolder(tabs[0]);
  store().togglePin(tabs[0]);
  store().folders.deleteFolder(foldersOf(space().pinned).front());
  store().toasts.undoToast();
  EXPECT_THAT(space().today.peek(), ElementsAre(tabs[0], tabs[2])) << "its folder has gone";
}

TEST_F(TabOperations, AFolderThatIsDeletedLeavesItsTabsInToday) {
  const auto tabs = openTabs(3);
  store().folders.newFolder(tabs[1]);
  const FolderRef folder = foldersOf(space().pinned).front();
  for (const char* name : {"  Reading\n", " \n "}) store().folders.rename(folder, name);
  EXPECT_EQ(folder->name.peek(), "Reading");
  for (int again = 0; again < 2; ++again) store().folders.deleteFolder(folder);
  EXPECT_THAT(space().today.peek(), ElementsAre(tabs[1], tabs[0], tabs[2]));
  EXPECT_FALSE(tabs[1]->pinnedURL.peek());
  EXPECT_THAT(space().pinned.peek(), IsEmpty());
}

TEST_F(TabOperations, SelectionGoesRoundAndByNumber) {
  const auto tabs = openTabs(3);
  store().select(tabs[2]);
  store().selectAdjacentTab(1);
  EXPECT_EQ(selected(), tabs[0]);
  store().selectAdjacentTab(-1);
  EXPECT_EQ(selected(), tabs[2]);
  for (const auto& [number, expected] :
       std::map<int, size_t>{{0, 2}, {1, 0}, {2, 1}, {8, 1}, {9, 2}}) {
    store().selectTabNumber(number);
    EXPECT_EQ(selected(), tabs[expected]) << number;
  }
  store().folders.newFolder(tabs[0]);
  store().select(tabs[0]);
  store().folders.toggle(foldersOf(space().pinned).front());
  store().selectAdjacentTab(1);
  EXPECT_EQ(selected(), tabs[1]) << "from a collapsed folder to the first visible tab";
  advance(1s);
  store().select(tabs[2]);
  advance(1s);
  store().select(tabs[0]);
  store().coming.advanceTabSwitcher();
  EXPECT_EQ(selected(), tabs[2]) << "the one before";
}

TEST_F(TabOperations, SelectingTellsEverybodyOnce) {
  const auto tabs = openTabs(2);
  store().select(tabs[0]);
  world.told.clear();
  store().coming.capture = tabs[0]->id;
  store().select(tabs[0]);
  EXPECT_THAT(world.told, IsEmpty());
  EXPECT_TRUE(store().coming.capture.peek());
  advance(5s);
  world.told.clear();
  world.viewOnScreen(tabs[0])->snapshot = Image::make(1, 1, {0, 0, 0, 0});
  store().select(tabs[1]);
  EXPECT_THAT(world.told, ElementsAre("activate https://b/ after https://a/"));
  EXPECT_FALSE(store().coming.capture.peek());
  EXPECT_EQ(tabs[1]->lastActiveAt, world.scheduler.now());
  settle();
  EXPECT_EQ(world.view(tabs[1])->focusCount, 1);
  EXPECT_TRUE(tabs[0]->thumbnail.peek()) << "as it was left";
  space().setSplit({tabs[0]->id, tabs[1]->id});
  world.saveNow();
  advance(5s);
  store().select(tabs[1]);
  EXPECT_EQ(tabs[0]->lastActiveAt, world.scheduler.now()) << "both halves are looked at";
}

TEST_F(TabOperations, EveryChangeIsSavedByItself) {
  const auto tabs = openTabs(2);
  const SpaceRef home = store().activeSpace();
  for (const TabRef& tab : tabs) store().select(tab);
  store().spaceEditing.commit({.name = "Second", .profileID = home->profile->id});
  store().folders.newFolder();
  const FolderRef folder = std::get<FolderRef>(space().pinned.peek().front());
  const std::function<void()> changes[] = {
      [&] { store().switching.switchTo(home); },
      [&] { store().select(tabs[0]); },
      [&] { world.view(tabs[0])->setTitle("New"); },
      [&] { store().folders.newFolder(); },
      [&] { store().folders.deleteFolder(std::get<FolderRef>(space().pinned.peek().front())); },
      [&] { store().switching.switchTo(store().spaces.peek().back()); },
      [&] { store().folders.rename(folder, "Name"); },
      [&] { store().folders.toggle(folder); },
      [&] { store().chrome.setSidebarWidth(301); },
      [&] { store().chrome.toggleSidebar(); },
      [&] { store().move(tabs[0], TodayDestination{}, home); },
      [&] { store().clearToday(home); },
      [&] { store().toasts.undoToast(); },
      [&] {
        space().setSplit({tabs[0]->id});
        store().scheduleSave();
      },
      [&] { store().coming.closeSplitView(); },
      [&] { store().spaceEditing.commit({.spaceID = home->id, .name = "Renamed"}); },
      [&] { store().spaceEditing.deleteSpace(home); },
  };
  for (const auto& change : changes) {
    SCOPED_TRACE(&change - changes);
    advance(2s);
    const std::string before = world.sessionFile();
    change();
    settle();
    advance(1100ms);
    EXPECT_NE(world.sessionFile(), before);
  }
}

TEST_F(TabOperations, NobodyHearsOfAPrivateTab) {
  const auto secret =
      std::make_shared<Space>(UUID::random(), privateProfile(), "Secret", "leaf.fill", 0.0);
  auto spaces = store().spaces.peek();
  spaces.push_back(secret);
  store().setSpaces(std::move(spaces));
  store().switching.switchTo(secret);
  const auto tabs = openTabs(3);
  for (const TabRef& tab : tabs) store().select(tab);
  store().choices.learn(suggestion::Search{.text = "Cats"}, "c");
  store().close(tabs[0]);
  store().clearToday(secret);
  store().toasts.undoToast();
  store().spaceEditing.deleteSpace(secret);
  EXPECT_THAT(world.told, IsEmpty());
  EXPECT_THAT(store().choices.byProfile, IsEmpty());
  EXPECT_EQ(store().littleWindows.openLittleWindow(address("https://secret/"), privateProfile()),
            nullptr);
}

// A space that a, b and c are open in, b selected, d pinned and wandered to w; beside another.
struct Scene : World {
  Scene() {
    launch();
    home = store->activeSpace();
    for (const char* name : {"d", "c", "b", "a"})
      tabs.insert(tabs.begin(), open(std::string("https://") + name + "/", false));
    a = tabs[0], b = tabs[1], c = tabs[2], d = tabs[3];
    store->select(b);
    store->move(d, PinnedDestination{}, home);
    d->load(address("https://w/"));
    store->spaceEditing.commit({.name = "Away", .profileID = home->profile->id});
    away = store->activeSpace();
    scheduler.advance(5s);
    told.clear();
  }
  // Favorites | pinned | today | the selected one | how many were closed | what extensions heard.
  std::string seen() const {
    std::string text;
    const auto add = [&](const auto& words) {
      for (const std::string& word : words) text += word + " ";
      text += "| ";
    };
    add(urls(home->profile->favorites.peek()));
    add(urls(tabsOf(home->pinned.peek())));
    add(urls(home->today.peek()));
    const TabRef selected = home->selectedTab();
    add(selected ? urls({selected}) : std::vector<std::string>{});
    text += std::to_string(store->archive.closedTabs.peek().size()) + " |";
    for (const auto& one : told) text += " " + one + ",";
    return std::regex_replace(text, std::regex("https://|/(?=[ ,])"), "");
  }
  SpaceRef home, away;
  TabList tabs;
  TabRef a, b, c, d;
};

// What names its tab or its space does the same wherever the person is looking.
TEST_F(TabOperations, ASpaceNeedNotBeActive) {
  const URL x = address("https://x/");
  const std::pair<const char*, std::function<void(Scene&)>> operations[] = {
      {"| w | a b x c | x | 0 | open x, activate x after b, title x,",
       [&](Scene& s) { s.store->openTab(x, {.after = s.b}); }},
      {"| w | x a b c | b | 0 | open x,",
       [&](Scene& s) {
         const TabRef opened = s.store->openTab(x, {.after = s.d, .select = false});
         EXPECT_EQ(opened->lastActiveAt, s.scheduler.now());
       }},
      {"| w |  a b c | b | 0 | open nothing,",
       [](Scene& s) { s.store->openTab(std::nullopt, {.in = s.home, .select = false}); }},
      {"| w | a b c | c | 0 | activate c after b, title c,",
       [](Scene& s) { s.store->select(s.c); }},
      {"| w | a b c | w | 0 | activate w after b,", [](Scene& s) { s.store->select(s.d); }},
      {"| w | b c | b | 1 | close a,", [](Scene& s) { s.store->close(s.a); }},
      {"| w | a c | c | 1 | close b, activate c, title c,",
       [](Scene& s) {
         s.store->close(s.b);
         EXPECT_TRUE(s.b->isDiscarded && !s.b->webView());
       }},
      {"| w | a | a | 2 | close c, close b, activate a, title a,",
       [](Scene& s) {
         s.store->close(s.c);
         s.store->close(s.b);
       }},
      {"| d | a b c | b | 0 |", [](Scene& s) { s.store->close(s.d); }},
      {"| d | a b c | a | 0 | activate w after b, activate a after d, title a,",
       [](Scene& s) {
         s.store->select(s.d);
         s.store->close(s.d);
         EXPECT_FALSE(s.d->isDiscarded || s.d->liveWebView());
       }},
      {"| w | b c | b | 1 | close a,",
       [](Scene& s) {
         s.home->setSplit({s.a->id, s.b->id});
         s.store->close(s.a);
         EXPECT_EQ(s.home->split().size(), 1u);
       }},
      {"| w | | | 3 | close a, close b, close c,", [](Scene& s) { s.store->clearToday(s.home); }},
      {"| w | | w | 3 | close a, close b, close c,",
       [](Scene& s) {
         s.home->selectedTabID = s.d->id;
         s.saveNow();
         s.store->clearToday(s.home);
       }},
      {"| w | a b c | | 0 | close a, close b, close c, open a, open b, open c,",
       [](Scene& s) {
         s.store->clearToday(s.home);
         s.store->toasts.undoToast();
       }},
      {"| w | c | c | 2 | close a, close b, close c, open c, activate c, title c,",
       [](Scene& s) {
         s.store->clearToday(s.home);
         s.store->archive.reopenClosedTab();
       }},
      {"| a w | b c | b | 0 |",
       [](Scene& s) {
         s.store->move(s.a, PinnedDestination{nullptr, s.d->id}, s.home);
       }},
      {"| | a w b c | b | 0 |",
       [](Scene& s) { s.store->move(s.d, TodayDestination{s.b->id}, s.home); }},
      {"a | w | b c | b | 0 |",
       [](Scene& s) { s.store->move(s.a, FavoritesDestination{}, s.home); }},
      {"| w | x a b c | x | 0 | open x, activate x after b, title x,",
       [&](Scene& s) {
         s.store->archive.reopen({{.id = UUID::random(), .url = x}, s.home->id, {}});
       }},
      {"| w | a b popup c | popup | 0 | open popup, activate popup after b, title popup,",
       [](Scene& s) { s.view(s.b)->openWindow("https://popup/"); }},
      {"| w | a c | c | 1 | close b, activate c, title c,",
       [](Scene& s) { s.view(s.b)->closeWindow(); }},
      {"| w | a b/#there c | b/#there | 0 | url b/#there,",
       [](Scene& s) { s.view(s.b)->setURL("https://b/#there"); }}};
  for (const auto& [seen, operate] : operations) {
    for (const bool isActive : {false, true}) {
      Scene scene;
      if (isActive) scene.store->switching.switchTo(scene.home);
      scene.scheduler.advance(5s);
      scene.expectSaved();
      operate(scene);
      scene.scheduler.settle();
      scene.expectSaved();
      EXPECT_EQ(scene.seen(), seen) << (isActive ? "active" : "not active");
      scene.scheduler.advance(5s);
      scene.expectSaved();
    }
  }
}

TEST_F(TabOperations, CommandWFindsWhatToClose) {
  const auto tabs = openTabs(1);
  FakeWindow other;
  world.interface.shown = &world.window;
  store().select(tabs[0]);
  const TabRef peeked = loadAside("https://peek/");
  publish(store().peek.tab, peeked);
  store().target.closeSelectedTab();
  EXPECT_FALSE(store().peek.tab.peek() || peeked->liveWebView());
  EXPECT_EQ(selected(), tabs[0]);
  world.desktop.active = &other;
  store().target.closeSelectedTab();
  EXPECT_EQ(other.closeCount, 1);
  world.desktop.active = &world.window;
  store().target.closeSelectedTab();
  EXPECT_THAT(space().today.peek(), IsEmpty());
  EXPECT_EQ(world.window.closeCount, 0);
  store().target.closeSelectedTab();
  EXPECT_EQ(world.window.closeCount, 1);
}

TEST_F(TabOperations, LinksAreCopiedCleanAndEscaped) {
  store().copiedLink.copyLink();
  EXPECT_FALSE(world.desktop.clipboardText);
  const TabRef tab = load("https://a/");
  publish(tab->url, address("https://a/?utm_source=x&q=1"));
  tab->title = "A [b] c";
  world.saveNow();
  store().copiedLink.copyLink(nullptr, LinkForm::Markdown);
  EXPECT_EQ(world.desktop.clipboardText, "[A [b\\] c](https://a/?q=1)");
  EXPECT_TRUE(store().copiedLink.didCopyLink);
  EXPECT_FALSE(store().toasts.toast.peek());
  advance(1200ms);
  EXPECT_FALSE(store().copiedLink.didCopyLink);
  store().chrome.toggleSidebar();
  store().copiedLink.copyLink();
  EXPECT_EQ(toast(), "Copied link");
}

}  // namespace
}  // namespace orvel::test
