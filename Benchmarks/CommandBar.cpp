// What a key in the command bar costs the main thread, in a store of 500 tabs, 500 archived records
// and 100 commands. Aims: the list under 1 ms, everything that follows one key under 4 ms.

#include <benchmark/benchmark.h>

#include "Models/CommandBar/CommandBar.h"
#include "Models/CommandBar/PickedChoices.h"
#include "Models/CommandBar/Suggestions.h"
#include "Models/Store/Archive.h"
#include "Tests/Kit/Publish.h"
#include "Tests/Models/World.h"

namespace orvel::test {
namespace {

constexpr int kTabs = 500;
constexpr int kArchived = 500;
constexpr int kCommands = 100;

// Titles as people have them, every eighth in another script.
std::string title(int number) {
  return (number % 8 == 0 ? "Ebbe und Flut: die Gezeiten auf der Höhe der Zeit, Teil "
                          : "The title of an article that somebody keeps, number ") +
         std::to_string(number);
}

std::string link(const char* host, int number) {
  const std::string text = std::to_string(number);
  return std::string("https://www.") + host + text + ".test/news/2026/01/an-article?page=" + text;
}

struct Desk {
  World world;
  std::vector<PaletteCommand> commands;

  Desk() {
    world.launch();
    auto& store = *world.store;
    for (int i = 0; i < kTabs; ++i) world.open(link("site", i), i == 0)->title = title(i);
    std::vector<ArchivedTabRecord> archive;
    for (int i = 0; i < kArchived; ++i)
      archive.push_back(
          {.tab = {.id = UUID::random(), .title = title(i), .url = address(link("former", i))}});
    test::publish(store.archive.records, std::move(archive));
    for (int i = 0; i < kCommands; ++i)
      commands.push_back({.id = "command" + std::to_string(i),
                          .title = "Do something with the present page " + std::to_string(i)});
    for (int i = 0; i < 400; ++i)
      store.history->recordVisit(world.space().profile->id, address(link("visited", i)), title(i),
                                 world.scheduler.now());
    for (int i = 0; i < 2; ++i) store.choices.learn(suggestion::Search{"tide"}, "tide");
    world.scheduler.settle();
  }
};

Desk& desk() {
  static Desk instance;
  return instance;
}

// An ordinary word, one that is nowhere so that all is searched, and one beyond ASCII.
constexpr const char* kTexts[] = {"article", "nowhere", "höhe"};

void list(benchmark::State& state) {
  auto& store = *desk().world.store;
  const std::string text = kTexts[state.range(0)];
  const auto tabs = store.activeSpace()->allTabs();
  const text::Needle needle(text);
  for (auto _ : state)
    benchmark::DoNotOptimize(suggestions(
        {.text = text,
         .shortcuts = store.settings.searchShortcuts.peek(),
         .tabs = tabs,
         .selectedTab = store.activeSpace()->selectedTab(),
         .archive = store.archive.records.peek(),
         .commandsMatching =
             [&](const auto&) {
               std::vector<PaletteCommand> found;
               for (const auto& command : desk().commands)
                 if (needle.isIn(command.title)) found.push_back(command);
               return found;
             },
         .topChoice = [&](const auto& query,
                          auto rows) { return store.choices.topChoice(query, rows); }}));
  state.SetLabel(text + ", aim 1 ms");
}
BENCHMARK(list)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

// The field's completion, the new text, the searches' answers, and the view's effect for each.
void key(benchmark::State& state) {
  auto& world = desk().world;
  const auto bar = CommandBar::make(*world.store, CommandBarMode::NewTab);
  bar->appear();
  const auto shown = effect([&] { benchmark::DoNotOptimize(bar->suggestions()); });
  world.scheduler.settle();
  const std::string text = kTexts[state.range(0)];
  size_t length = 0;
  for (auto _ : state) {
    length = length % text.size() + 1;
    const std::string typed = text.substr(0, length);
    benchmark::DoNotOptimize(bar->complete(typed));
    bar->setText(typed);
    world.scheduler.settle();
  }
  state.SetLabel(text + ", aim 4 ms, with the search of 400 visits");
}
BENCHMARK(key)->DenseRange(0, 2)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace orvel::test
