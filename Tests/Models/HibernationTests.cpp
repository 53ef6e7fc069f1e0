#include "Tests/Kit/Publish.h"
#include "Tests/Models/ModelTest.h"

#include "Models/Store/BrowserStore.h"
#include "Models/Store/SessionFile.h"
#include "Models/Tab/Hibernation.h"
#include "Models/Tab/Peek.h"
#include "Models/Windows/Toasts.h"

namespace orvel::test {
namespace {

struct HibernationTest : ModelTest {
  HibernationTest() {
    for (int i = 0; i < 3; ++i) tabs.push_back(load("https://a" + std::to_string(i) + "/"));
  }
  bool isLive(size_t tab) { return tabs[tab]->liveWebView() != nullptr; }
  void pass(Duration age) {
    world.scheduler.start(store().hibernation.hibernateIdleTabs(age, world.scheduler.now()))
        .detach();
    settle();
  }
  void saveStates(Hibernation::StateWriting writing) {
    store().hibernation.saveTabStates(writing);
    settle();
  }
  std::string stateFile(const TabRef& tab) {
    return world.disk->read(tab->pageState.file(), ~0ull).value_or("");
  }

  TabList tabs;
};

TEST_F(HibernationTest, IdleTabsGiveUpTheirViewsAndComeBackAsTheyWere) {
  tabs[0]->load(address("https://second/"));
  advance(1799s);
  EXPECT_TRUE(isLive(0));
  pass(1800s);
  EXPECT_TRUE(isLive(0)) << "a second too early";
  advance(1s);
  pass(1800s);
  EXPECT_FALSE(isLive(0) || isLive(1));
  EXPECT_TRUE(isLive(2)) << "selected";
  EXPECT_FALSE(tabs[0]->isDiscarded);
  store().select(tabs[0]);
  settle();
  EXPECT_TRUE(tabs[0]->canGoBack);
}

TEST_F(HibernationTest, TheLoopPassesEveryFiveMinutesAndWritesTheStates) {
  advance(299s);
  world.disk->put(tabs[1]->pageState.file(), "before it was scrolled");
  advance(1s);
  EXPECT_NE(stateFile(tabs[1]), "before it was scrolled");
  advance(1501s);
  EXPECT_FALSE(isLive(1));
}

TEST_F(HibernationTest, WhatIsInUseStays) {
  const std::function<void()> uses[] = {
      [this] { world.view(tabs[0])->camera = CaptureState::Active; },
      [this] { world.view(tabs[0])->microphone = CaptureState::Muted; },
      [this] { world.view(tabs[0])->media = MediaPlaybackState::Playing; },
      [this] { publish(store().peek.tab, tabs[0]); },
      [this] {
        space().setSplit({tabs[0]->id, tabs[2]->id});
      },
      [this] { space().selectedTabID = tabs[0]->id; }};
  const auto endAllUse = [this] {
    world.view(tabs[0])->camera = world.view(tabs[0])->microphone = CaptureState::None;
    world.view(tabs[0])->media = MediaPlaybackState::Paused;
    publish(store().peek.tab, nullptr);
    space().setSplit({});
    space().selectedTabID = tabs[2]->id;
    tabs[2]->webView();
  };
  for (const auto& use : uses) {
    use();
    pass(Duration::zero());
    EXPECT_TRUE(isLive(0));
    endAllUse();
  }
  tabs[0]->lastActiveAt.reset();
  pass(1800s);
  EXPECT_TRUE(isLive(0)) << "never looked at counts as now";
  world.desktop.memoryIsShort();
  settle();
  EXPECT_FALSE(isLive(0)) << "short memory spares only what is in use";
  EXPECT_TRUE(isLive(2));
}

TEST_F(HibernationTest, ATabSelectedDuringTheQuestionStays) {
  for (int turns = 0; turns < 5; ++turns) {
    store().select(tabs[2]);
    tabs[0]->webView();
    settle();
    const Date now = world.scheduler.now();
    world.scheduler.start(store().hibernation.hibernateIdleTabs(Duration::zero(), now)).detach();
    for (int turn = 0; turn < turns; ++turn) world.scheduler.turn();
    store().select(tabs[0]);
    settle();
    EXPECT_TRUE(isLive(0)) << "after " << turns;
  }
}

TEST_F(HibernationTest, TheFolderHoldsTheStatesOfLivingTabsOnly) {
  using enum Hibernation::StateWriting;
  saveStates(Background);
  const TabRef closed = tabs[0];
  store().close(closed);
  for (const char* stray : {"stray.state", "stray.state.new"})
    world.disk->put(world.services.paths.tabStates() / stray, "x");
  EXPECT_FALSE(stateFile(closed).empty()) << "until the next pass";
  pass(Duration::zero());
  saveStates(Now);
  // May belong to a write that is under way.
  world.disk->put(tabs[1]->pageState.file().string() + ".new", "x");
  for (const auto writing : {Now, Background}) {
    saveStates(writing);
    EXPECT_EQ(world.disk->list("/data/Orvel/TabStates").size(), 3u);
    EXPECT_TRUE(stateFile(closed).empty());
    EXPECT_FALSE(stateFile(tabs[1]).empty() || stateFile(tabs[2]).empty());
  }
}

TEST_F(HibernationTest, UnreadFilesAreCarriedOverUntouched) {
  world.store->session.save();
  store().hibernation.saveTabStates(Hibernation::StateWriting::Now);
  world.writer.drain(1s);
  World again(world.disk);
  again.launch();
  again.scheduler.settle();
  const int before = again.disk->stepCount();
  const std::string unread = stateFile(tabs[0]);
  again.store->hibernation.saveTabStates(Hibernation::StateWriting::Now);
  again.writer.drain(1s);
  EXPECT_EQ(again.disk->stepCount() - before, 4) << "only the page on screen is written";
  EXPECT_EQ(stateFile(tabs[0]), unread);
  EXPECT_FALSE(unread.empty());
  again.store->clearToday(again.store->activeSpace());
  again.store->toasts.undoToast();
  EXPECT_TRUE(again.space().tab(tabs[0]->id)->pageState.saved()) << "the file still counts";
}

TEST_F(HibernationTest, AStateThatCouldNotBeWrittenIsTriedAgain) {
  pass(Duration::zero());
  world.disk->failAlways(MemoryFileSystem::Fault::InputOutput);
  saveStates(Hibernation::StateWriting::Background);
  world.disk->failAlways(MemoryFileSystem::Fault::None);
  EXPECT_TRUE(stateFile(tabs[0]).empty());
  saveStates(Hibernation::StateWriting::Background);
  EXPECT_FALSE(stateFile(tabs[0]).empty());
}

}  // namespace
}  // namespace orvel::test
