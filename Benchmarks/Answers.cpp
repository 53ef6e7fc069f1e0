// What a keystroke costs: a mixed bag of typed texts, and calculations beside those of libqalculate
// on the same texts in the same run.

#include <benchmark/benchmark.h>
#include <libqalculate/Calculator.h>

#include "BrowserCore/Answers/CurrencyConversion.h"
#include "BrowserCore/Answers/QuickAnswer.h"

namespace {

using namespace orvel;

constexpr const char* kCalculations[] = {
    "2+2",     "1/3",         "(1.5+2.25)*4-7/8", "2^100",     "sqrt(16)*3",
    "0.1+0.2", "7*(3+4)^2/5", "ln(10)+sin(1)",    "1234*5678", "-2^2+10",
};

constexpr const char* kTyped[] = {
    "2+2",
    "(1.5+2.25)*4-7/8",
    "2^100",
    "20% of 1,000",
    "how to boil an egg",
    "weather tomorrow",
    "news.example.com/today",
    "https://example.com/a/b?q=1&r=2#top",
    "2024-01-15",
    "555-0142",
    "iphone 15 pro max 256gb price",
    "10 km to mi",
    "100 °C in fahrenheit",
    "5 kg to km",
    "$100 in euros",
    "1.234,56 eur to usd",
    "straße münchen öffnungszeiten",
    "the answer to life, the universe, and everything?",
    "a",
    "what is 15 percent of the population of the largest city in the world",
};

void evaluateMixedBag(benchmark::State& state) {
  const CurrencyRates rates({{"USD", 1.0956}, {"GBP", 0.86645}}, "2024-01-02");
  for (auto _ : state)
    for (const char* text : kTyped) benchmark::DoNotOptimize(QuickAnswer::evaluate(text, &rates));
  state.SetItemsProcessed(state.iterations() * std::ssize(kTyped));
}

void evaluateCalculations(benchmark::State& state) {
  for (auto _ : state)
    for (const char* text : kCalculations)
      benchmark::DoNotOptimize(QuickAnswer::evaluate(text, nullptr));
  state.SetItemsProcessed(state.iterations() * std::ssize(kCalculations));
}

void libqalculateCalculations(benchmark::State& state) {
  static Calculator& calculator = []() -> Calculator& {
    static Calculator instance;
    instance.loadGlobalDefinitions();
    return instance;
  }();
  EvaluationOptions options;
  options.approximation = APPROXIMATION_APPROXIMATE;
  for (auto _ : state)
    for (const char* text : kCalculations) {
      const MathStructure value = calculator.calculate(text, options);
      benchmark::DoNotOptimize(calculator.print(value, 1000));
    }
  state.SetItemsProcessed(state.iterations() * std::ssize(kCalculations));
}

BENCHMARK(evaluateMixedBag);
BENCHMARK(evaluateCalculations);
BENCHMARK(libqalculateCalculations);

}  // namespace
