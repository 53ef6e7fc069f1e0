// Conversion of the public filter lists to the engine's rules: the list's text in, JSON out.
//
// The lists are those that scripts/fetch-texts brings; ORVEL_FILTERS names another folder. Each is
// measured beside a floor: a pass that only splits lines, escapes them and writes as many bytes as
// the conversion's JSON has. "memory" is what a conversion adds to the process at its peak, as a
// multiple of text and JSON together, and without the JSON as a multiple of the text.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "BrowserCore/ContentBlocking/FilterListConverter.h"

namespace {

using namespace orvel;

std::string readList(const std::string& name) {
  const char* const folder = std::getenv("ORVEL_FILTERS");
  std::ifstream file(
      (folder != nullptr ? folder : ORVEL_SOURCE_DIR "/build/texts/Filters") + ("/" + name),
      std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string converted(const std::string& text) {
  return encodedJSON(FilterListConverter::convert(text).rules);
}

// Splits `text` at its line feeds and writes each line, escaped and in the frame of a rule, until
// the share of `size` that belongs to the text read so far is written.
std::string floorPass(std::string_view text, size_t size) {
  constexpr std::string_view head = R"({"trigger":{"url-filter":")";
  constexpr std::string_view tail =
      R"(","resource-type":["font","image","media","raw","script","style-sheet","svg-document"]},)"
      R"("action":{"type":"block"}})";
  std::string out(size, ' ');
  char* end = out.data();
  const double ratio = static_cast<double>(size) / static_cast<double>(text.size());
  for (size_t begin = 0; begin < text.size();) {
    const size_t next = std::min(text.find('\n', begin), text.size());
    const auto share = static_cast<size_t>(static_cast<double>(next) * ratio);
    while (static_cast<size_t>(end - out.data()) < share) {
      const std::string_view line = text.substr(begin, next - begin);
      const auto left = static_cast<size_t>(out.data() + size - end);
      if (left < head.size() + 2 * line.size() + tail.size()) break;
      end += head.copy(end, head.size());
      for (const char c : line) {
        if (c == '"' || c == '\\') *end++ = '\\';
        *end++ = c;
      }
      end += tail.copy(end, tail.size());
    }
    begin = next + 1;
  }
  return out;
}

// A field of the kernel's account of this process, in bytes.
size_t memory(std::string_view field) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(field)) return std::stoul(line.substr(field.size() + 1)) * 1024;
  return 0;
}

// How far the process rises above its start while it converts, in bytes.
size_t peakMemory(const std::string& text) {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << 5;  // the peak starts anew
  const size_t before = memory("VmRSS");
  benchmark::DoNotOptimize(converted(text));
  return memory("VmHWM") - before;
}

void setCounters(benchmark::State& state, const std::string& text, size_t jsonSize) {
  using benchmark::Counter;
  const auto lines = static_cast<double>(std::ranges::count(text, '\n'));
  state.SetBytesProcessed(static_cast<int64_t>(text.size()) * state.iterations());
  state.counters["json/s"] =
      Counter(static_cast<double>(jsonSize), Counter::kIsIterationInvariantRate, Counter::kIs1024);
  // Seconds a line, which the console prints with its unit as nanoseconds.
  state.counters["line"] = Counter(lines, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

void convertAndEncode(benchmark::State& state, const char* name) {
  const std::string text = readList(name);
  if (text.empty()) return state.SkipWithError("the list is missing: run scripts/fetch-texts");
  const auto textSize = static_cast<double>(text.size());
  const auto jsonSize = static_cast<double>(converted(text).size());
  const auto peak = static_cast<double>(peakMemory(text)) + textSize;
  for (auto _ : state) benchmark::DoNotOptimize(converted(text));
  setCounters(state, text, static_cast<size_t>(jsonSize));
  state.counters["memory/(text+json)"] = peak / (textSize + jsonSize);
  state.counters["(memory-json)/text"] = (peak - jsonSize) / textSize;
}

void convertOnly(benchmark::State& state, const char* name) {
  const std::string text = readList(name);
  if (text.empty()) return state.SkipWithError("the list is missing: run scripts/fetch-texts");
  for (auto _ : state) benchmark::DoNotOptimize(FilterListConverter::convert(text));
  setCounters(state, text, 0);
}

void writeFloor(benchmark::State& state, const char* name) {
  const std::string text = readList(name);
  if (text.empty()) return state.SkipWithError("the list is missing: run scripts/fetch-texts");
  const size_t jsonSize = converted(text).size();
  for (auto _ : state) benchmark::DoNotOptimize(floorPass(text, jsonSize));
  setCounters(state, text, jsonSize);
}

BENCHMARK_CAPTURE(convertAndEncode, easylist, "easylist.txt")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convertAndEncode, easyprivacy, "easyprivacy.txt")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convertOnly, easylist, "easylist.txt")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(convertOnly, easyprivacy, "easyprivacy.txt")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeFloor, easylist, "easylist.txt")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeFloor, easyprivacy, "easyprivacy.txt")->Unit(benchmark::kMillisecond);

}  // namespace
