#pragma once

#include <optional>
#include <string_view>

#include "BrowserCore/Answers/QuickAnswer.h"

namespace orvel::UnitConversion {

// Evaluates texts like "10 km in mi" in any letter case: lengths, masses, temperatures, volumes (in
// United States measure), speeds, amounts of data (in powers of 1000) and times. Commas of the
// amount are skipped. Absent for anything else, for units of different dimensions, and where the
// result is beyond a double.
[[nodiscard]] std::optional<QuickAnswer> convert(std::string_view text);

}  // namespace orvel::UnitConversion
