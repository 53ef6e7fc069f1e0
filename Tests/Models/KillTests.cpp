#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <random>

#include "Models/Sidebar/Folders.h"
#include "Models/Spaces/SpaceEditing.h"
#include "Models/Spaces/SpaceSwitching.h"
#include "Models/Store/Archive.h"
#include "Models/Store/BrowserStore.h"
#include "Models/Store/SessionFile.h"
#include "Models/Tab/Hibernation.h"
#include "Models/Windows/Toasts.h"
#include "Models/Windows/WindowChrome.h"
#include "Tests/Models/World.h"

namespace orvel::test {
namespace {

// A change is safe a second later, when all that is written before it and the session itself are on
// a disk that takes its time for each step.
constexpr Duration kStepTime = 2ms;
constexpr Duration kAllowedLoss = 1s + 80 * kStepTime;

// What the program was at a moment.
struct Moment {
  Duration at;
  std::string session;
};

// A person at the browser, and all that they did.
class Hand {
 public:
  Hand(World& world, std::mt19937& random) : world_(world), random_(random) {
    world.disk->beforeStep = [&scheduler = world.scheduler] { scheduler.spend(kStepTime); };
    world.engine.pages["https://fails/"] = {.load = FakePage::Load::Fail};
    note();
  }
  ~Hand() { world_.disk->beforeStep = nullptr; }

  void act() {
    actions_[random_() % actions_.size()]();
    note();
    // Pages load at once: what they change is another moment.
    world_.scheduler.settle();
    note();
  }
  // Hundredths of a second, with a window that is being resized meanwhile.
  void pause() {
    for (auto ticks = random_() % 50; ticks > 0; --ticks) {
      world_.scheduler.advance(10ms);
      world_.writer.write("/config/Orvel/defaults.ini", std::to_string(ticks));
    }
  }

  std::vector<Moment> moments;

 private:
  void note() {
    moments.push_back({world_.scheduler.elapsed(),
                       untracked([&] { return store().session.record().encoded(); })});
  }
  BrowserStore& store() { return *world_.store; }
  Space& space() { return world_.space(); }
  URL page() { return address("https://page/" + std::to_string(random_() % 1000)); }
  TabRef tab() {
    const TabList tabs = space().allTabs();
    return tabs.empty() ? nullptr : tabs[random_() % tabs.size()];
  }
  FolderRef folder() {
    const auto folders = foldersOf(space().pinned.peek());
    return folders.empty() ? nullptr : folders[random_() % folders.size()];
  }
  std::shared_ptr<Space> anySpace() {
    const auto& spaces = store().spaces.peek();
    return spaces[random_() % spaces.size()];
  }
  // Done to a tab or a folder, if there is one.
  std::function<void()> onTab(std::function<void(const TabRef&)> action) {
    return [this, action] {
      if (const TabRef found = tab()) action(found);
    };
  }
  std::function<void()> onFolder(std::function<void(const FolderRef&)> action) {
    return [this, action] {
      if (const FolderRef found = folder()) action(found);
    };
  }
  void moveWithinThePage(const TabRef& one) {
    if (const auto view = world_.view(one); view && view->url())
      view->setURL(view->url()->text() + "#" + std::to_string(random_() % 1000));
  }
  void makeSpace() {
    const bool isShared = random_() % 2 == 0;
    if (store().spaces.peek().size() < 4)
      store().spaceEditing.commit(
          {.name = "Space",
           .profileID = isShared ? std::optional(space().profile->id) : std::nullopt});
  }
  void hibernate() {
    const Date now = world_.scheduler.now();
    world_.scheduler.start(store().hibernation.hibernateIdleTabs(Duration::zero(), now)).detach();
  }

  World& world_;
  std::mt19937& random_;
  const std::vector<std::function<void()>> actions_ = {
      [this] { store().openTab(page(), {.select = random_() % 2 == 0}); },
      [this] { store().openTab(page()); },
      onTab([this](const TabRef& one) { one->load(page()); }),
      onTab([](const TabRef& one) { one->load(address("https://fails/")); }),
      onTab([this](const TabRef& one) { moveWithinThePage(one); }),
      onTab([](const TabRef& one) { one->goBack(); }),
      onTab([this](const TabRef& one) { store().select(one); }),
      onTab([this](const TabRef& one) { store().close(one); }),
      onTab([this](const TabRef& one) { store().togglePin(one); }),
      onTab([this](const TabRef& one) { store().move(one, FavoritesDestination{}); }),
      onTab([this](const TabRef& one) {
        store().move(one, PinnedDestination{folder(), {}});
      }),
      onTab([this](const TabRef& one) { store().move(one, TodayDestination{}); }),
      [this] { store().folders.newFolder(tab()); },
      onFolder([this](const FolderRef& one) { store().folders.deleteFolder(one); }),
      onFolder([this](const FolderRef& one) { store().folders.toggle(one); }),
      onFolder([this](const FolderRef& one) { store().folders.rename(one, page().text()); }),
      [this] { store().clearToday(store().activeSpace()); },
      [this] { store().toasts.undoToast(); },
      [this] { store().archive.reopenClosedTab(); },
      [this] {
        store().archive.reopen(
            {{.id = UUID::random(), .title = "Old", .url = page()}, space().id, {}});
      },
      [this] { makeSpace(); },
      [this] { store().switching.switchTo(anySpace()); },
      [this] {
        if (random_() % 4 == 0) store().spaceEditing.deleteSpace(anySpace());
      },
      [this] { store().spaceEditing.commit({.spaceID = anySpace()->id, .name = page().text()}); },
      [this] { store().chrome.toggleSidebar(); },
      [this] { store().chrome.setSidebarWidth(200 + static_cast<double>(random_() % 100)); },
      [this] { hibernate(); }};
};

// Every page comes back at the address that the session has for it, whatever its state file holds.
void expectPagesAtTheirAddresses(World& world) {
  for (const TabRef& tab : world.store->everyTab()) {
    const auto wanted = tab->url.peek();
    tab->webView();
    world.scheduler.settle();
    EXPECT_EQ(tab->url.peek(), wanted);
    EXPECT_EQ(world.view(tab)->url(), wanted);
  }
}

enum class End { Killed, PowerCut };

// Rounds at one disk, each of which ends at some moment of some step of a write.
void runRounds(int rounds, End end, std::mt19937& random) {
  const auto disk = std::make_shared<MemoryFileSystem>();
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    World world(disk);
    world.launch();
    Duration died;
    std::vector<Moment> moments;
    {
      Hand hand(world, random);
      for (auto actions = random() % 30; actions > 0; --actions) {
        hand.act();
        hand.pause();
        if (random() % 9 == 0)
          world.store->hibernation.saveTabStates(Hibernation::StateWriting::Background);
      }
      died = world.scheduler.elapsed();
      disk->failAtStep(0, MemoryFileSystem::Fault::Killed);
      moments = std::move(hand.moments);
    }
    world.store.reset();
    world.scheduler.settle();
    world.scheduler.advance(1s);
    if (end == End::Killed)
      disk->restartAfterKill();
    else
      disk->restartAfterPowerCut();

    World after(disk);
    after.launch();
    const std::string found = untracked([&] { return after.store->session.record().encoded(); });
    ASSERT_TRUE(after.file("session.unreadable.json").empty());
    // A moment lasts until the next one.
    bool isRecent = false;
    for (size_t i = 0; i < moments.size(); ++i) {
      const bool lasts = i + 1 == moments.size() || moments[i + 1].at >= died - kAllowedLoss;
      isRecent |= lasts && moments[i].session == found;
    }
    // Nothing was changed and nothing saved yet: the first start makes a space each time.
    if (moments.size() > 1 || round > 0) {
      ASSERT_TRUE(isRecent || after.sessionFile().empty()) << found;
    }
    const bool isDue = std::ranges::any_of(moments, [&](const Moment& moment) {
      return moment.at < died - kAllowedLoss && moment.session != moments.front().session;
    });
    if (isDue) ASSERT_FALSE(after.sessionFile().empty());
    expectPagesAtTheirAddresses(after);
  }
}

TEST(Kill, NoChangeOlderThanASaveIsLostAndNoPageElsewhere) {
  const unsigned seed = std::random_device()();
  std::cout << "seed " << seed << std::endl;
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  runRounds(45, End::Killed, random);
  runRounds(45, End::PowerCut, random);
}

}  // namespace
}  // namespace orvel::test
