// Searching the history at three sizes, beside the plain ranked statement on the same file.

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <random>
#include <vector>

#include "BrowserCore/History/HistoryDatabase.h"

namespace {

using namespace orvel;

constexpr Date kNow = Date(std::chrono::seconds(1'800'000'000));
const UUID kProfile = *UUID::parse("8F0A5D4E-0000-4000-8000-000000000001");

// A file with `rows` pages of words drawn from a small vocabulary, made once for the process.
const std::filesystem::path& fileWith(int64_t rows) {
  static std::map<int64_t, std::filesystem::path> files;
  auto& file = files[rows];
  if (!file.empty()) return file;
  file = std::filesystem::temp_directory_path() /
         fmt::format("orvel-bench-{}-{}.sqlite", getpid(), rows);
  [[maybe_unused]] const auto made = HistoryDatabase::open(file);
  sqlite3* handle = nullptr;
  sqlite3_open(file.c_str(), &handle);
  sqlite3_exec(handle, "BEGIN", nullptr, nullptr, nullptr);
  sqlite3_stmt* insert = nullptr;
  sqlite3_prepare_v2(handle, "INSERT INTO visits VALUES (?1, ?2, ?3, ?4, ?5)", -1, &insert,
                     nullptr);
  const char* words[] = {"tide",   "harbour", "light", "compass", "weather", "recipe",
                         "search", "news",    "chart", "wind",    "story",   "index",
                         "forum",  "video",   "mail",  "garden"};
  std::mt19937 draw(1);
  const auto word = [&] { return words[draw() % std::size(words)]; };
  for (int64_t i = 0; i < rows; ++i) {
    const std::string url = fmt::format("https://www.{}{}.test/{}/{}-{}?id={}", word(),
                                        draw() % 500, word(), word(), word(), i);
    const std::string title =
        fmt::format("{} and {} in the {} of {}", word(), word(), word(), word());
    sqlite3_bind_text(insert, 1, kProfile.text().c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(insert, 2, url.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(insert, 3, title.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_int(insert, 4, static_cast<int>(draw() % 30 + 1));
    sqlite3_bind_double(insert, 5, 1.8e9 - static_cast<double>(draw() % 30'000'000));
    sqlite3_step(insert);
    sqlite3_reset(insert);
  }
  sqlite3_finalize(insert);
  sqlite3_exec(handle, "COMMIT", nullptr, nullptr, nullptr);
  sqlite3_close(handle);
  return file;
}

// One, three and eight letters, and what stands nowhere.
constexpr const char* kQueries[] = {"t", "lig", "harbour2", "qqzzqqzz"};

// Runs `work` over and over; a person notices the slow ones, so the percentiles are told.
template <class Work>
void measure(benchmark::State& state, Work work) {
  using Clock = std::chrono::steady_clock;
  std::vector<double> milliseconds;
  for (auto _ : state) {
    const auto begin = Clock::now();
    work();
    milliseconds.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
  }
  std::ranges::sort(milliseconds);
  const auto percentile = [&](size_t percent) {
    return milliseconds[(milliseconds.size() - 1) * percent / 100];
  };
  state.counters["median_ms"] = percentile(50);
  state.counters["p99_ms"] = percentile(99);
}

void search(benchmark::State& state) {
  auto history = *HistoryDatabase::open(fileWith(state.range(0)));
  history.prepareSearch(kProfile);
  measure(state, [&] {
    benchmark::DoNotOptimize(history.search(kQueries[state.range(1)], kProfile, 30, kNow));
  });
}

void plainStatement(benchmark::State& state) {
  sqlite3* handle = nullptr;
  sqlite3_open(fileWith(state.range(0)).c_str(), &handle);
  measure(state, [&] {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(handle,
                       "SELECT url, title, visit_count, last_visit FROM visits WHERE profile = ?1 "
                       "AND (url LIKE ?2 ESCAPE '\\' OR title LIKE ?2 ESCAPE '\\') ORDER BY "
                       "visit_count / (1.0 + (?3 - last_visit) / 86400.0) DESC LIMIT 30",
                       -1, &statement, nullptr);
    const std::string pattern = fmt::format("%{}%", kQueries[state.range(1)]);
    sqlite3_bind_text(statement, 1, kProfile.text().c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(statement, 2, pattern.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_double(statement, 3, 1.8e9);
    while (sqlite3_step(statement) == SQLITE_ROW) {
    }
    sqlite3_finalize(statement);
  });
  sqlite3_close(handle);
}

void sizes(benchmark::internal::Benchmark* bench) {
  for (const int64_t rows : {10'000, 100'000, 1'000'000})
    for (const int64_t query : {0, 1, 2, 3}) bench->Args({rows, query});
  bench->Unit(benchmark::kMillisecond);
}

BENCHMARK(search)->Apply(sizes);
BENCHMARK(plainStatement)->Apply(sizes);

}  // namespace
