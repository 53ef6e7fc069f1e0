// Writing and reading a session of so many tabs: three quarters in Today, the rest in folders.

#include <benchmark/benchmark.h>

#include "BrowserCore/Session/SessionRecord.h"

namespace {

using namespace orvel;

TabRecord tab(int64_t number) {
  return {.id = UUID::random(),
          .title = fmt::format("The page with the number {} – its site’s name", number),
          .url = URL::parse(fmt::format(
              "https://www.site-{}.example/articles/2026/{}?from=home#top", number % 97, number)),
          .lastActiveAt = Date(std::chrono::seconds(1'760'000'000 + number))};
}

SessionRecord session(int64_t tabs) {
  SessionRecord record;
  record.profiles.push_back({.id = UUID::random(), .name = "Personal"});
  SpaceRecord space{.id = UUID::random(), .profileID = record.profiles[0].id};
  for (int64_t i = 0; i < tabs; ++i) {
    if (i % 4 != 0) {
      space.today.push_back(tab(i));
      continue;
    }
    if (i % 40 == 0) space.pinned.emplace_back(FolderRecord(UUID::random(), "Folder", true));
    std::get<FolderRecord>(space.pinned.back()).children.emplace_back(tab(i));
  }
  record.spaces.push_back(std::move(space));
  return record;
}

void encodeSession(benchmark::State& state) {
  const SessionRecord record = session(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(record.encoded());
}

void decodeSession(benchmark::State& state) {
  const std::string data = session(state.range(0)).encoded();
  for (auto _ : state) benchmark::DoNotOptimize(SessionRecord::decode(data, Date()));
  state.counters["bytes"] = static_cast<double>(data.size());
}

BENCHMARK(encodeSession)->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(decodeSession)->Arg(100)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMicrosecond);

}  // namespace
