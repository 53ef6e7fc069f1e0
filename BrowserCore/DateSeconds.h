#pragma once

#include <algorithm>
#include <cmath>

#include "BrowserCore/Date.h"

// Dates as files hold them: seconds from an origin, with fractions.
namespace orvel::date_seconds {

[[nodiscard]] inline double since(Date origin, Date date) {
  return std::chrono::duration<double>(date - origin).count();
}

// Seconds beyond what a date holds, infinite ones too, become the furthest that it does; they are a
// number.
[[nodiscard]] inline Date after(Date origin, double seconds) {
  constexpr double kFurthest = 9e12;
  return origin +
         std::chrono::microseconds(std::llround(std::clamp(seconds, -kFurthest, kFurthest) * 1e6));
}

}  // namespace orvel::date_seconds
