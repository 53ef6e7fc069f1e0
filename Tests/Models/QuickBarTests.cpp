#include <gtest/gtest.h>

#include "Tests/Models/World.h"

namespace orvel::test {
namespace {

struct QuickBarKeys : testing::Test {
  World world;
  QuickBarKeys() { world.launch(); }

  void choose(std::optional<QuickBarKey> key) {
    world.store->settings.quickBarKey = key;
    world.store->applyQuickBarKey();
  }
};

TEST_F(QuickBarKeys, ATakenKeyIsToldAndStaysChosen) {
  world.desktop.isHotKeyTaken = true;
  choose(QuickBarKey::ShiftOptionSpace);
  world.scheduler.settle();
  EXPECT_TRUE(world.store->isQuickBarKeyTaken.peek());
  EXPECT_EQ(world.store->settings.quickBarKey.peek(), QuickBarKey::ShiftOptionSpace);

  // The late answer to one key says nothing of the next choice.
  choose(QuickBarKey::OptionSpace);
  choose(std::nullopt);
  world.scheduler.settle();
  EXPECT_FALSE(world.store->isQuickBarKeyTaken.peek());

  world.desktop.isHotKeyTaken = false;
  choose(QuickBarKey::OptionSpace);
  world.scheduler.settle();
  EXPECT_FALSE(world.store->isQuickBarKeyTaken.peek());
}

TEST_F(QuickBarKeys, TheKeyOpensTheBarAndClosesItInFront) {
  world.store->window = &world.window;
  choose(QuickBarKey::ControlShiftSpace);
  world.scheduler.settle();
  world.desktop.hotKeyPressed();
  EXPECT_EQ(world.store->commandBar.peek(), CommandBarMode::NewTab);
  EXPECT_EQ(world.window.frontCount, 1);
  world.desktop.hotKeyPressed();
  EXPECT_EQ(world.store->commandBar.peek(), std::nullopt);
}

}  // namespace
}  // namespace orvel::test
