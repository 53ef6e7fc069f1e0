#pragma once

#include <gmock/gmock.h>

#include "Models/CommandBar/PickedChoices.h"
#include "Models/Store/SessionFile.h"
#include "Models/Windows/LittleWindows.h"
#include "Models/Windows/Toasts.h"
#include "Tests/Models/World.h"

namespace orvel::test {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

using SpaceRef = std::shared_ptr<Space>;

// A small window over one tab, which goes with it.
class FakeLittleWindow final : public LittleWindow {
 public:
  FakeLittleWindow(BrowserStore& store, TabRef tab) : store_(store), tab_(std::move(tab)) {}
  const TabRef& tab() const override { return tab_; }
  bool isActive() const override { return true; }
  void promote() override { isPromoted = true; }
  void close() override;

  bool isPromoted = false;

 private:
  BrowserStore& store_;
  TabRef tab_;
};

// A test of the model in one run of the program.
struct ModelTest : testing::Test {
  ModelTest() { world.launch(); }

  BrowserStore& store() { return *world.store; }
  SessionFile& session();
  PickedChoices& choices();
  Space& space() { return world.space(); }
  TabRef selected() { return space().selectedTab(); }
  void settle() {
    world.scheduler.settle();
    world.expectSaved();
  }
  void advance(Duration duration) {
    world.scheduler.advance(duration);
    world.expectSaved();
  }
  void TearDown() override { settle(); }
  // A selected tab whose page has loaded.
  TabRef load(const std::string& url) {
    const TabRef tab = world.open(url);
    settle();
    return tab;
  }
  // A tab in none of the lists, whose page has loaded.
  TabRef loadAside(const std::string& url);
  std::shared_ptr<Profile> privateProfile() {
    return std::make_shared<Profile>(world.engine, UUID::random(), "Private",
                                     Profile::Privacy::Private);
  }
  // The pages that the history of a profile knows, "address title", the latest first.
  std::vector<std::string> visits(const UUID& profile);
  // What the toast on screen says; empty without one.
  std::string toast();

  World world;
};

}  // namespace orvel::test
