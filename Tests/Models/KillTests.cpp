#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <random>

#include "Base/Log.h"
#include "Tests/Models/World.h"

namespace orvel::test {
namespace {

struct Change {
  int number;
  Duration at;
};

// The numbers of the changes that the session holds, oldest first.
std::vector<int> numbersIn(const BrowserStore& store) {
  std::vector<int> numbers;
  for (const TabRef& tab : store.activeSpace()->today.peek())
    numbers.push_back(std::stoi(std::string(tab->url.peek()->path().substr(1))));
  std::ranges::reverse(numbers);
  return numbers;
}

// One change at a time, from 0 on, until the disk dies under the program.
std::vector<Change> changeUntilKilled(World& world, int first, std::mt19937& random,
                                      int stepsToLive) {
  std::vector<Change> made;
  world.disk->failAtStep(stepsToLive, MemoryFileSystem::Fault::Killed);
  const int lastStep = world.disk->stepCount() + stepsToLive;
  const auto isAlive = [&] { return world.disk->stepCount() <= lastStep; };
  for (int number = first; isAlive(); ++number) {
    made.push_back({number, world.scheduler.elapsed()});
    world.open("https://page/" + std::to_string(number), number % 3 == 0);
    if (number % 7 == 0) world.store->saveTabStates(BrowserStore::StateWriting::Background);
    for (auto pause = random() % 400; pause > 0 && isAlive(); --pause) world.scheduler.advance(1ms);
  }
  return made;
}

enum class End { Killed, PowerCut };

// Rounds of changes on one disk, each of which ends in the middle of some step of a write.
void runRounds(int rounds, End end, std::mt19937& random) {
  // One second until the save; writing takes no time on the virtual clock.
  constexpr Duration kAllowedLoss = 1050ms;
  const auto disk = std::make_shared<MemoryFileSystem>();
  int next = 0;
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    World world(disk);
    world.launch();
    const std::vector<int> before = numbersIn(*world.store);
    const auto made = changeUntilKilled(world, next, random, static_cast<int>(random() % 40));
    const Duration died = world.scheduler.elapsed();
    world.store.reset();
    world.scheduler.settle();
    if (end == End::Killed)
      disk->restartAfterKill();
    else
      disk->restartAfterPowerCut();

    World after(disk);
    after.launch();
    const std::vector<int> kept = numbersIn(*after.store);
    ASSERT_TRUE(after.file("session.unreadable.json").empty());
    ASSERT_TRUE(std::ranges::is_sorted(kept));
    ASSERT_GE(kept.size(), before.size());
    ASSERT_TRUE(std::equal(before.begin(), before.end(), kept.begin()));
    for (const Change& change : made)
      if (died - change.at > kAllowedLoss) {
        ASSERT_TRUE(std::ranges::binary_search(kept, change.number)) << change.number;
      }
    next = made.back().number + 1;
  }
}

TEST(Kill, NoChangeOlderThanASaveIsLostAndNoFileBroken) {
  const unsigned seed = std::random_device()();
  std::cout << "seed " << seed << std::endl;
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  runRounds(45, End::Killed, random);
  runRounds(45, End::PowerCut, random);
}

}  // namespace
}  // namespace orvel::test
