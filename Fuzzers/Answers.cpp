// Questions: whatever is typed, an answer has the form that its source promises, and currencies are
// only converted with rates.

#include <cstdlib>

#include "BrowserCore/CurrencyConversion.h"
#include "BrowserCore/QuickAnswer.h"
#include "BrowserCore/UnitConversion.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace orvel;
  static const CurrencyRates rates({{"USD", 1.1}, {"JPY", 150}, {"GBP", 0.85}}, "2024-01-02");
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto answer = QuickAnswer::evaluate(text, nullptr);
  const auto converted = QuickAnswer::evaluate(text, &rates);
  if (answer) {
    require(converted == answer);
    require(!answer->question.empty() && !answer->answer.empty());
    require(answer->answer.find("inf") == std::string::npos);
  } else if (converted) {
    require(CurrencyConversion::parse(text).has_value());
    require(converted->question.ends_with(" · ECB 2024-01-02"));
  }
  // A restated conversion is a question with the same answer.
  if (const auto units = UnitConversion::convert(text);
      units && units->question.find('E') == std::string::npos)
    require(UnitConversion::convert(units->question).has_value());
  return 0;
}
