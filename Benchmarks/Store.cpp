#include <benchmark/benchmark.h>

#include "Models/BrowserStore.h"
#include "Models/SidebarRows.h"
#include "Tests/Fakes/FakeDesktop.h"
#include "Tests/Fakes/FakeEngine.h"
#include "Tests/Fakes/MemoryFileSystem.h"
#include "Tests/Fakes/VirtualScheduler.h"

// What the model costs the main thread by number of tabs.
namespace orvel::test {
namespace {

class Program {
 public:
  explicit Program(std::shared_ptr<MemoryFileSystem> given) : disk(std::move(given)) {}
  ~Program() {
    store.reset();
    scheduler.settle();
  }
  void launch() {
    defaults.setBoolean("contentBlockingEnabled", false);
    defaults.setNumber("filterListsLastChecked", 1e12);
    store = BrowserStore::make(services);
  }

  std::shared_ptr<MemoryFileSystem> disk;
  VirtualScheduler scheduler;
  FakeEngine engine{scheduler};
  FakeDesktop desktop{scheduler};
  FileWriter writer{scheduler, disk};
  FaviconStore favicons{*disk, "/data/Orvel/Favicons"};
  // No list is there and none is fetched; blocking is off, so that no first page waits.
  UserDefaults defaults;
  FilterListUpdater filterLists{
      scheduler, writer, defaults, {}, {disk, "/data/Orvel/Filters", "/share/Filters"}, {}};
  Services services{.scheduler = scheduler,
                    .engine = engine,
                    .desktop = desktop.desktop(),
                    .files = writer,
                    .paths = AppPaths::in("/data", "/cache", "/downloads"),
                    .favicons = favicons,
                    .defaults = defaults,
                    .filterLists = filterLists,
                    .resources = "/share",
                    .downloads = std::make_shared<DownloadManager>(*disk, desktop, "/downloads")};
  std::shared_ptr<BrowserStore> store;
};

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
  Program program(diskWithTabs(state.range(0)));
  program.launch();
  program.scheduler.settle();
  for (auto _ : state) {
    program.store->save();
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
    auto program = std::make_unique<Program>(disk);
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
  Program program(diskWithTabs(state.range(0)));
  program.launch();
  for (auto _ : state) benchmark::DoNotOptimize(sidebarRows(*program.store->activeSpace(), 4));
}
BENCHMARK(sidebarRowsOfASpace)
    ->RangeMultiplier(10)
    ->Range(100, 10'000)
    ->Unit(benchmark::kMillisecond);

void selectATab(benchmark::State& state) {
  Program program(diskWithTabs(state.range(0)));
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
