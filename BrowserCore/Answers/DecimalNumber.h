#pragma once

#include <optional>
#include <string>
#include <string_view>

// Numbers as people type and read them: decimal digits with a point, in no locale.
namespace orvel::decimalNumber {

// The double nearest to a text of an optional "-", ASCII digits and at most one ".", which may
// stand first or last. Absent for any other text, one without a digit, and what no double can hold.
[[nodiscard]] std::optional<double> parse(std::string_view text);

// Both print from the shortest decimal form that reads back as `value`, rounded half to even, and
// print neither trailing zeros nor a negative zero. `value` must be finite.

// For example "-1234.5": no grouping, at most `mostFractionDigits` behind the point.
[[nodiscard]] std::string plain(double value, int mostFractionDigits);
// For example "1.2676506E30" and "1E-7": one digit before the point, at most
// `mostSignificantDigits` in all.
[[nodiscard]] std::string scientific(double value, int mostSignificantDigits);

}  // namespace orvel::decimalNumber
