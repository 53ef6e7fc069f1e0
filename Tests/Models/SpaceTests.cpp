#include "Tests/Kit/Publish.h"
#include "Tests/Models/ModelTest.h"

#include "Models/CommandBar/PickedChoices.h"
#include "Models/Settings/Settings.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwipe.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/ComingFeatures.h"
#include "Models/Tab/Peek.h"
#include "Models/Windows/WindowChrome.h"

namespace orvel::test {
namespace {

using testing::Truly;

struct Spaces : ModelTest {
  SpaceRef at(size_t index) { return store().spaces.peek().at(index); }
  SpaceRef make(const std::string& name, std::optional<UUID> profile = std::nullopt) {
    store().spaceEditing.beginNewSpace();
    SpaceDraft draft = *store().spaceEditing.spaceDraft.peek();
    draft.name = name;
    draft.profileID = profile;
    store().spaceEditing.commit(draft);
    return store().spaces.peek().back();
  }
};

TEST_F(Spaces, SwitchingWakesTheSelectedTab) {
  const TabRef tab = load("https://a/");
  const SpaceRef first = at(0), second = make("Second");
  tab->teardown();
  store().coming.capture = tab->id;
  publish(store().switching.revealingSpaceID, first->id);
  publish(store().peek.tab, loadAside("https://peek/"));

  store().switching.switchTo(first);
  EXPECT_FALSE(store().switching.spaceSwitchForward);
  EXPECT_NE(tab->liveWebView(), nullptr);
  EXPECT_FALSE(store().coming.capture.peek() || store().peek.tab.peek() ||
               store().switching.revealingSpaceID.peek());
  EXPECT_FALSE(store().switching.leavingSpaceID.peek()) << "no motion: the change is over at once";
  settle();
  EXPECT_GT(world.view(tab)->focusCount, 0);
}

TEST_F(Spaces, DeletingTheActiveOneActivatesItsNeighbor) {
  const SpaceRef first = at(0), second = make("2"), third = make("3"), fourth = make("4");
  store().switching.switchTo(third);
  store().spaceEditing.deleteSpace(third);
  EXPECT_EQ(store().activeSpace(), second);
  store().spaceEditing.deleteSpace(fourth);
  store().switching.switchTo(first);
  store().spaceEditing.deleteSpace(first);
  EXPECT_EQ(store().activeSpace(), second);
  store().spaceEditing.deleteSpace(third);
  store().spaceEditing.deleteSpace(second);
  EXPECT_THAT(store().spaces.peek(), ElementsAre(second)) << "the last one stays";
}

TEST_F(Spaces, DeletionTakesAlongWhatBelongsToTheSpaceAndNothingElse) {
  const SpaceRef kept = at(0), gone = make("Gone", kept->profile->id);
  const TabRef favorite = world.open("https://favorite/");
  store().move(favorite, FavoritesDestination());
  const TabRef pinned = world.open("https://pinned/");
  store().togglePin(pinned);
  const TabRef today = load("https://today/");
  publish(store().archive.closedTabs, {{kept->id, {}}, {gone->id, {}}});
  publish(store().archive.records, {{.spaceID = gone->id}, {.spaceID = kept->id}});
  store().settings.linkRoutes = {{.pattern = "a", .spaceID = gone->id},
                                 {.pattern = "b", .spaceID = kept->id}};
  world.told.clear();
  store().spaceEditing.deleteSpace(gone);
  EXPECT_THAT(world.told, ElementsAre("close https://pinned/", "close https://today/"));
  for (const TabRef& tab : {pinned, today})
    EXPECT_TRUE(tab->isDiscarded && !tab->liveWebView()) << tab->url.peek()->text();
  EXPECT_FALSE(favorite->isDiscarded) << "the profile lives on";
  const auto isKept = [&](const auto& one) { return one.spaceID == kept->id; };
  EXPECT_THAT(store().archive.closedTabs.peek(), ElementsAre(Truly(isKept)));
  EXPECT_THAT(store().archive.records.peek(), ElementsAre(Truly(isKept)));
  EXPECT_THAT(store().settings.linkRoutes.peek(), ElementsAre(Truly(isKept)));
  advance(10s);
  EXPECT_THAT(world.file("archive.json"), Not(HasSubstr(gone->id.text())));
  EXPECT_THAT(world.file("archive.json"), HasSubstr(kept->id.text()));
  EXPECT_THAT(world.engine.removedStores, IsEmpty());
}

TEST_F(Spaces, TheLastSpaceOfAProfileTakesItsData) {
  SpaceRef gone = at(0), kept = make("Kept");
  store().switching.switchTo(gone);
  TabRef favorite = world.open("https://favorite/");
  store().move(favorite, FavoritesDestination());
  const UUID profile = gone->profile->id;
  store().choices.learn(suggestion::Search{.text = "cats"}, "c");
  settle();
  EXPECT_THAT(visits(profile), SizeIs(1));
  world.engine.failingRemovals = 4;
  EXPECT_TRUE(store().spaceEditing.deletesProfile(*gone));
  store().spaceEditing.deleteSpace(gone);
  EXPECT_TRUE(favorite->isDiscarded);
  EXPECT_THAT(store().profiles.peek(), ElementsAre(kept->profile));
  EXPECT_FALSE(store().choices.byProfile.contains(profile));
  EXPECT_THAT(visits(profile), IsEmpty());
  EXPECT_THAT(world.file("Choices.json"), Not(HasSubstr("cats")));
  gone.reset();
  favorite.reset();
  advance(4999ms);
  EXPECT_THAT(world.engine.removedStores, IsEmpty());
  advance(1ms);
  EXPECT_THAT(world.engine.removedStores, ElementsAre(profile)) << "the fifth attempt";
}

// The swipe, as a stream of events over a sidebar of 248 points.

struct Swipe : Spaces {
  Swipe() : first(at(0)), second(make("2")) {
    world.interface.shown = &world.window;
    store().switching.switchTo(first);
    store().chrome.setSidebarWidth(kWidth);
    world.desktop.isMotionOn = true;
    advance(5s);
  }
  void event(ScrollEvent::Phase phase, double travel = 0, double dy = 0) {
    EXPECT_EQ(world.desktop.events.offer(world.window, ScrollEvent{.phase = phase,
                                                                   .deltaX = -travel,
                                                                   .deltaY = dy,
                                                                   .timestamp = time,
                                                                   .pointerX = pointerX}),
              EventUse::PassedOn);
  }
  // A gesture of equal steps, which stays in the air.
  void drag(double travel, double duration, int steps = 10) {
    event(ScrollEvent::Phase::Began);
    for (int i = 0; i < steps; ++i) {
      time += duration / steps;
      event(ScrollEvent::Phase::Changed, travel / steps);
    }
  }
  void lift() { event(ScrollEvent::Phase::Ended); }
  // Long enough for the samples to grow old.
  void rest() {
    time += 0.5;
    event(ScrollEvent::Phase::Changed, 0.001);
  }

  static constexpr double kWidth = 200;
  double time = 1000;
  double pointerX = 100;
  const SpaceRef first, second;
};

TEST_F(Swipe, EndsByProjection) {
  struct Case {
    const char* name;
    double travel, duration;  // in width, in seconds
    bool rests;
    double back;  // a last flick of 10 ms, in width
    bool switches;
  };
  const Case cases[] = {
      {"slow, 40 percent", 0.4, 4, true, 0, false},
      {"slow, 60 percent", 0.6, 4, true, 0, true},
      {"40 percent, just too slow", 0.4, 0.4 / (0.099 / 0.15), false, 0, false},
      {"40 percent, just fast enough", 0.4, 0.4 / (0.101 / 0.15), false, 0, true},
      {"a short flick", 0.1, 0.03, false, 0, true},
      {"flicked back", 0.7, 0.7, true, -0.2, false},
      {"toward no space", -0.9, 0.2, false, 0, false},
  };
  for (const Case& test : cases) {
    advance(5s);
    store().switching.switchTo(first);
    time += 10;
    drag(test.travel * kWidth, test.duration, 200);
    if (test.rests) rest();
    if (test.back != 0) {
      time += 0.01;
      event(ScrollEvent::Phase::Changed, test.back * kWidth);
    }
    lift();
    EXPECT_EQ(store().activeSpace() == second, test.switches) << test.name;
    EXPECT_EQ(store().switching.spaceSwipeOffset.peek(), 0) << test.name;
  }
}

TEST_F(Swipe, WhatIsNoSwipe) {
  enum class Sidebar { Docked, Hidden, Peeking };
  using enum Sidebar;
  using Deltas = std::vector<std::pair<double, double>>;
  const struct {
    const char* name;
    Sidebar sidebar;
    double pointerX;
    bool begins;
    Deltas deltas;
    bool isFollowed;
  } cases[] = {
      {"nothing has begun", Docked, 100, false, {}, false},
      {"a swipe", Docked, 100, true, {}, true},
      {"as much down as across", Docked, 100, true, {{3, 3}}, false},
      {"only the first delta decides", Docked, 100, true, {{0, 0}, {3.1, 3}, {1, 90}}, true},
      {"beside the sidebar", Docked, kWidth, true, {}, false},
      {"no sidebar", Hidden, 100, true, {}, false},
      {"a peeking one", Peeking, 100, true, {}, true}};
  for (const auto& test : cases) {
    publish(store().chrome.isSidebarVisible, test.sidebar == Docked);
    publish(store().chrome.isSidebarPeeking, test.sidebar == Peeking);
    world.saveNow();
    pointerX = test.pointerX;
    if (test.begins) event(ScrollEvent::Phase::Began);
    for (const auto& [across, down] : test.deltas) event(ScrollEvent::Phase::Changed, across, down);
    event(ScrollEvent::Phase::Changed, 50);
    EXPECT_EQ(store().switching.spaceSwipeOffset.peek() != 0, test.isFollowed) << test.name;
    event(ScrollEvent::Phase::Cancelled);
  }
  drag(50, 0.1);
  event(ScrollEvent::Phase::Cancelled);
  world.desktop.events.offer(
      world.window,
      ScrollEvent{.phase = ScrollEvent::Phase::Changed, .isMomentum = true, .deltaX = -90});
  EXPECT_EQ(store().switching.spaceSwipeOffset.peek(), 0) << "momentum is nobody's finger";
}

}  // namespace
}  // namespace orvel::test
