#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "BrowserCore/Answers/CurrencyRates.h"
#include "BrowserCore/Answers/QuickAnswer.h"

namespace orvel::CurrencyConversion {

struct Request {
  double amount;
  std::string from;  // upper-case currency codes
  std::string to;

  friend bool operator==(const Request&, const Request&) = default;
};

// Reads texts like "100 usd to eur", "$100 in euros" and "1.234,56 eur as £" in any letter case.
// The decimal mark is the last of "." and ","; a comma alone is one where fewer than three digits
// follow it. Absent for anything else, for a currency into itself and for currencies that the
// European Central Bank doesn't publish.
[[nodiscard]] std::optional<Request> parse(std::string_view text);

// Returns what `parse` reads. Absent also when `rates` lacks one of the currencies, and where the
// result is beyond a double.
[[nodiscard]] std::optional<QuickAnswer> convert(std::string_view text, const CurrencyRates& rates);

}  // namespace orvel::CurrencyConversion
