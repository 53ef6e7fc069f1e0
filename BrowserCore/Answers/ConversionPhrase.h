#pragma once

#include <optional>
#include <string>
#include <string_view>

// The phrase that unit and currency conversions share: an amount, a unit, "to", "in" or "as", and
// another unit. Digits and white space are those of ICU's regular expressions, \d and \s.
namespace orvel::conversionPhrase {

// Views into the text that was read.
struct UnitPhrase {
  std::string_view amount;
  std::string_view source;
  std::string_view target;
};

// Matches the whole of a text with
//   ^\s*(-?[\d.,]+)\s*([^\s\d]+)\s+(?:to|in|as)\s+([^\s\d]+)\s*$
// in linear time. Of a text like "1., to m", in which the amount could end at more than one place,
// it is only sought with the longest amount: the rest of a shorter one begins with "." or ",",
// which no unit does.
[[nodiscard]] std::optional<UnitPhrase> readUnits(std::string_view lowerCased);

struct CurrencyPhrase {
  std::string_view prefix;
  std::string_view amount;
  std::string_view suffix;
  std::string_view target;
};

// Matches the whole of a text with
//   ^\s*([^\s\d.,-]*)\s*([\d][\d.,]*)\s*([^\s\d]*)\s+(?:to|in|as)\s+([^\s\d]+)\s*$
// in the same way.
[[nodiscard]] std::optional<CurrencyPhrase> readCurrencies(std::string_view lowerCased);

}  // namespace orvel::conversionPhrase
