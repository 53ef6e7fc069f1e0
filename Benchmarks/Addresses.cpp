// What runs on every keystroke in the command bar.

#include <benchmark/benchmark.h>

#include "BrowserCore/Addresses/ChoiceMemory.h"
#include "BrowserCore/Addresses/InlineCompletion.h"
#include "BrowserCore/Addresses/SearchShortcut.h"
#include "BrowserCore/Addresses/URLInput.h"

namespace orvel {
namespace {

// An evaluation is one text of the bag.
void explicitURL(benchmark::State& state) {
  const std::string bag[] = {
      "g",
      "github",
      "how to tie a tie",
      "12 * (3 + 4)",
      "100 usd to eur",
      "example.com",
      "Example.COM/Path?q=1",
      "localhost:3000/x",
      "192.168.0.1:8080",
      "https://www.example.com/a/long/path/to/a/page.html?with=a&query=too#and-a-fragment",
      "http://[2001:db8::1]:8080/",
      "münchen.de/straße",
      "mailto:someone@example.com",
      "wie weit ist es von zürich nach genf",
  };
  size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(URLInput::explicitURL(bag[i++ % std::size(bag)]));
}
BENCHMARK(explicitURL);

void shortcutMatch(benchmark::State& state) {
  const auto& shortcuts = SearchShortcut::builtIn();
  const std::string_view bag[] = {"npm left", "how to tie a tie", "example.com", "yt lofi"};
  size_t i = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(SearchShortcut::match(bag[i++ % std::size(bag)], shortcuts));
}
BENCHMARK(shortcutMatch);

ChoiceMemory fullMemory() {
  ChoiceMemory memory;
  for (int i = 0; memory.choices.size() < ChoiceMemory::kMaxPrefixes; ++i)
    for (int pick = 0; pick < 2; ++pick)
      memory.record(fmt::format("{:x} query", i * 7919), fmt::format("url:https://{}.test/", i % 9),
                    Date(std::chrono::seconds(i)));
  return memory;
}

void topChoice(benchmark::State& state) {
  const ChoiceMemory memory = fullMemory();
  std::vector<std::string> queries;
  for (const auto& [prefix, list] : memory.choices) queries.push_back(prefix);
  std::vector<std::string> keys;
  for (int i = 0; i < 20; ++i) keys.push_back(fmt::format("url:https://{}.test/", i + 4));
  size_t i = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(memory.topChoice(queries[i++ % queries.size()], keys));
}
BENCHMARK(topChoice);

void record(benchmark::State& state) {
  ChoiceMemory memory = fullMemory();
  int i = 1'000'000;
  for (auto _ : state) {
    memory.record(fmt::format("{} new query", i), "url:https://a.test/",
                  Date(std::chrono::seconds(i)));
    ++i;
  }
}
BENCHMARK(record);

// Texts for which every page is looked at.
void completeOver500(benchmark::State& state) {
  std::vector<URL> urls;
  for (int i = 0; i < 500; ++i)
    urls.push_back(*URL::parse(
        fmt::format("https://{}example{}.com/some/path/{}", i % 2 == 0 ? "www." : "", i, i)));
  const std::string_view bag[] = {"examplez", "exabc", "example499.com/z", "www.w"};
  size_t i = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(InlineCompletion::complete(bag[i++ % std::size(bag)], urls));
}
BENCHMARK(completeOver500);

}  // namespace
}  // namespace orvel
