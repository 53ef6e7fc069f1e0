#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "BrowserCore/Answers/CurrencyRates.h"

namespace orvel {

// The answer to a small question typed where one also types addresses and searches.
struct QuickAnswer {
  std::string question;  // the question restated
  std::string answer;

  // A calculation, a unit conversion or, with `rates`, a currency conversion; without rates (null)
  // no currency is converted. Absent for everything else: text that merely holds digits has to fall
  // through. Cheap enough to be asked at every keystroke.
  [[nodiscard]] static std::optional<QuickAnswer> evaluate(std::string_view text,
                                                           const CurrencyRates* rates);

  // A number for reading, the same in every locale: plain with at most 10 fraction digits where the
  // magnitude is 0 or from 1e-6 to below 1e15, otherwise with an exponent and at most 8 digits, as
  // in "1.2676506E30". "inf", "-inf" or "nan" for what isn't finite.
  [[nodiscard]] static std::string format(double value);
  // The same of the value rounded to two decimals, halves away from zero.
  [[nodiscard]] static std::string formatHundredths(double value);

  friend bool operator==(const QuickAnswer&, const QuickAnswer&) = default;
};

}  // namespace orvel
