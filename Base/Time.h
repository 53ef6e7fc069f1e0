#pragma once

#include <chrono>

#include "BrowserCore/Date.h"

namespace orvel {

using Duration = std::chrono::microseconds;
using std::chrono_literals::operator""h;
using std::chrono_literals::operator""min;
using std::chrono_literals::operator""s;
using std::chrono_literals::operator""ms;

// A moment on a clock that never jumps, counted from an arbitrary start.
using Instant = std::chrono::time_point<std::chrono::steady_clock, Duration>;

// A length given in seconds with a fraction, as constants of the interface are.
constexpr Duration seconds(double value) {
  return Duration(static_cast<Duration::rep>(value * 1'000'000.0));
}

constexpr double inSeconds(Duration value) { return static_cast<double>(value.count()) / 1e6; }

}  // namespace orvel
