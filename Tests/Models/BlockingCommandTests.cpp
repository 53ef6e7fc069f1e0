#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Models/World.h"

namespace orvel {
namespace {

using test::World;

struct BlockingCommands : testing::Test {
  World world;
  std::shared_ptr<test::FakeWebView> view;

  void SetUp() override {
    world.launch();
    view = world.view(world.open("https://www.news.test/page"));
    world.scheduler.settle();
  }
  std::string toast() const { return world.store->toast.peek()->message; }
  size_t reloads() const { return view->requests.size() - 1; }
};

TEST_F(BlockingCommands, SwitchTellAndReload) {
  auto& store = *world.store;
  store.toggleContentBlocking();
  EXPECT_EQ(toast(), "Blocking ads & trackers");
  EXPECT_TRUE(store.contentBlocker.isEnabled.peek());
  store.toggleContentBlocking();
  EXPECT_EQ(toast(), "Ad & tracker blocking off");
  store.toggleCookieRejection();
  EXPECT_EQ(toast(), "Cookie pop-up rejection off");
  store.toggleCookieRejection();
  EXPECT_EQ(toast(), "Rejecting cookie pop-ups");
  EXPECT_EQ(reloads(), 4u);
}

TEST_F(BlockingCommands, PauseTheSelectedTabsSite) {
  auto& store = *world.store;
  store.toggleBlockingOnCurrentSite();
  EXPECT_EQ(toast(), "Blocking paused on news.test");
  EXPECT_TRUE(store.contentBlocker.isPaused(URL::parse("https://a.news.test/")));
  store.toggleBlockingOnCurrentSite();
  EXPECT_EQ(toast(), "Blocking back on for news.test");
  EXPECT_FALSE(store.contentBlocker.isPaused(URL::parse("https://news.test/")));
  EXPECT_EQ(reloads(), 2u);

  world.open("about:blank");
  store.toast = std::nullopt;
  store.toggleBlockingOnCurrentSite();
  EXPECT_FALSE(store.toast.peek()) << "no host, no site";
}

}  // namespace
}  // namespace orvel
