// Questions: whatever is typed, an answer has the form that its source promises, and currencies are
// only converted with rates.

#include "BrowserCore/Answers/CurrencyConversion.h"
#include "BrowserCore/Answers/QuickAnswer.h"
#include "BrowserCore/Answers/UnitConversion.h"
#include "Fuzzers/Fuzz.h"

using namespace orvel;

void fuzz(std::string_view input) {
  static const CurrencyRates rates({{"USD", 1.1}, {"JPY", 150}, {"GBP", 0.85}}, "2024-01-02");
  const auto answer = QuickAnswer::evaluate(input, nullptr);
  const auto converted = QuickAnswer::evaluate(input, &rates);
  if (answer) {
    require(converted == answer);
    require(!answer->question.empty() && !answer->answer.empty());
    require(answer->answer.find("inf") == std::string::npos);
  } else if (converted) {
    require(CurrencyConversion::parse(input).has_value());
    require(converted->question.ends_with(" · ECB 2024-01-02"));
  }
  // A restated conversion is a question with the same answer.
  if (const auto units = UnitConversion::convert(input);
      units && units->question.find('E') == std::string::npos)
    require(UnitConversion::convert(units->question).has_value());
}
