#include <benchmark/benchmark.h>

#include "Models/Sidebar/SidebarRows.h"
#include "Models/Store/SessionFile.h"
#include "Tests/Models/World.h"

// What the model costs the main thread by number of tabs.
namespace orvel::test {
namespace {

// A session as people have it: a tenth favorites and pinned tabs, in folders of ten.
std::shared_ptr<MemoryFileSystem> diskWithTabs(int64_t count) {
  SessionRecord session;
  ProfileRecord profile{.id = UUID::random(), .name = "Personal"};
  SpaceRecord space{
      .id = UUID::random(), .name = "Personal", .symbol = "person.fill", .profileID = profile.id};
  FolderRecord folder(UUID::random(), "Folder", true);
  for (int64_t i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    TabRecord tab{.id = UUID::random(),
                  .title = "The title of an article that somebody keeps, number " + number,
                  .url = URL::parse("https://www.example" + number +
                                    ".org/news/2026/01/an-article?source=list&page=" + number),
                  .lastActiveAt = VirtualScheduler::startDate()};
    if (i % 10 != 0) {
      space.today.push_back(std::move(tab));
      continue;
    }
    tab.pinnedURL = tab.url;
    folder.children.emplace_back(std::move(tab));
    if (folder.children.size() == 10)
      space.pinned.emplace_back(
          std::exchange(folder, FolderRecord(UUID::random(), "Folder", true)));
  }
  if (!folder.children.empty()) space.pinned.emplace_back(std::move(folder));
  space.selectedTabID = space.today.front().id;
  session.activeSpaceID = space.id;
  session.profiles.push_back(std::move(profile));
  session.spaces.push_back(std::move(space));
  auto disk = std::make_shared<MemoryFileSystem>();
  disk->put("/data/Orvel/session.json", session.encoded());
  return disk;
}

// Recording, encoding and handing to the writer; the disk is a worker's.
void save(benchmark::State& state) {
  World program(diskWithTabs(state.range(0)));
  program.launch();
  program.scheduler.settle();
  for (auto _ : state) {
    program.store->session.save();
    state.PauseTiming();
    program.scheduler.settle();
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(save)
    ->RangeMultiplier(10)
    ->Range(100, 10'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();

// From the file to a store with exactly one web view.
void restore(benchmark::State& state) {
  const auto disk = diskWithTabs(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    auto program = std::make_unique<World>(disk);
    state.ResumeTiming();
    program->launch();
    state.PauseTiming();
    if (program->engine.views.size() != 1) state.SkipWithError("more than one web view");
    program.reset();
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(restore)
    ->RangeMultiplier(10)
    ->Range(100, 10'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();

void sidebarRowsOfASpace(benchmark::State& state) {
  World program(diskWithTabs(state.range(0)));
  program.launch();
  for (auto _ : state) benchmark::DoNotOptimize(sidebarRows(*program.store->activeSpace(), 4));
}
BENCHMARK(sidebarRowsOfASpace)
    ->RangeMultiplier(10)
    ->Range(100, 10'000)
    ->Unit(benchmark::kMillisecond);

void selectATab(benchmark::State& state) {
  World program(diskWithTabs(state.range(0)));
  program.launch();
  const TabList tabs = program.store->activeSpace()->today.peek();
  size_t next = 0;
  for (auto _ : state) {
    program.store->select(tabs[next]);
    next = (next + 7) % 50;
    state.PauseTiming();
    program.scheduler.settle();
    state.ResumeTiming();
  }
}
BENCHMARK(selectATab)->RangeMultiplier(10)->Range(100, 10'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orvel::test
