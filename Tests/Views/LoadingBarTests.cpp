#include <gtest/gtest.h>

#include "Tests/Kit/Publish.h"
#include "Tests/Models/World.h"
#include "Views/Page/LoadingBar.h"

namespace orvel {
namespace {

using Step = LoadingBarState::Step;

TEST(LoadingBar, ComesAtOnceForAPageThatIsLoadingAndNeverGoesBack) {
  EXPECT_EQ(LoadingBarState().appear(true, 0.3), (Step{0.3, true, 0, {}}));
  LoadingBarState bar;
  EXPECT_EQ(bar.appear(false, 0.3), (Step{0, false, 0, {}}));
  EXPECT_EQ(bar.setProgress(0.9), std::nullopt) << "nothing is loading";
  EXPECT_EQ(bar.setLoading(true, 0.1), (Step{0.1, true, 0, {}}));
  EXPECT_EQ(bar.setProgress(0.5), (Step{0.5, true, 0.25, {}}));
  for (const double notAhead : {0.4, 0.5}) EXPECT_EQ(bar.setProgress(notAhead), std::nullopt);
}

TEST(LoadingBar, RunsToItsFullWidthBeforeItFades) {
  LoadingBarState bar;
  (void)bar.appear(true, 0.6);
  const auto finish = bar.setLoading(false, 0.6);
  ASSERT_TRUE(finish && finish->load);
  EXPECT_EQ(*finish, (Step{1, true, 0.2, finish->load}));
  EXPECT_EQ(bar.didEnd(*finish->load), (Step{1, false, 0.25, {}}));
}

TEST(LoadingBar, StaysWhenANewLoadBeginsBeforeOrDuringTheFade) {
  for (const bool isFading : {false, true}) {
    LoadingBarState bar;
    (void)bar.appear(true, 0.5);
    const auto finish = bar.setLoading(false, 1);
    if (isFading) (void)bar.didEnd(*finish->load);
    EXPECT_EQ(bar.setLoading(true, 0.1), (Step{0.1, true, 0, {}}));
    EXPECT_EQ(bar.didEnd(*finish->load), std::nullopt);
  }
}

TEST(LoadingBar, AnotherPageTakesNothingOver) {
  LoadingBarState bar;
  (void)bar.appear(true, 0.8);
  const auto finish = bar.setLoading(false, 1);
  EXPECT_EQ(bar.appear(false, 0), (Step{0, false, 0, {}}));
  EXPECT_EQ(bar.didEnd(*finish->load), std::nullopt);
  EXPECT_EQ(bar.setLoading(false, 0), std::nullopt);
}

// No window is on screen, so that nothing takes time.
TEST(LoadingBar, GoesAtTheEndWithoutMotion) {
  test::World world;
  world.launch();
  const auto tab = world.open("https://a.example/");
  world.scheduler.settle();
  test::publish(tab->isLoading, true);
  LoadingBar bar;
  bar.setTab(tab);
  EXPECT_EQ(bar.opacity(), 1);
  test::publish(tab->isLoading, false);
  world.scheduler.settle();
  EXPECT_EQ(bar.opacity(), 0);
}

}  // namespace
}  // namespace orvel
