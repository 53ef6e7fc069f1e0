#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "BrowserCore/Date.h"

// The dates of the program's JSON files: RFC 3339 internet date and time in whole seconds.
namespace orvel::internetDate {

// For example "2025-03-01T12:30:05Z". Fractions of a second are cut off toward the past; what lies
// outside the years 0 to 9999 becomes their first or last second.
[[nodiscard]] std::string text(Date date);

// The moment of a text like "2025-03-01T12:30:05Z" or "2025-03-01t13:30:05+01:00". Absent for
// fractions of a second, days and hours that don't exist (leap seconds among them), and moments
// outside the years 0 to 9999 in UTC.
[[nodiscard]] std::optional<Date> parse(std::string_view text);

}  // namespace orvel::internetDate
