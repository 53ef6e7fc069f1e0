#pragma once

#include "Base/Time.h"

namespace orvel {

// A damped spring of mass 1: `response` is the period of the undamped motion in seconds, so that
// its stiffness is (2*pi/response)^2; `dampingFraction` is the damping ratio (1 is critical).
struct Spring {
  double response = 0;
  double dampingFraction = 1;
  // When the motion counts as logically finished. Zero means after one `response`.
  double settling = 0;
  // The speed that the motion starts with, as a multiple of its distance in each second: positive
  // toward its end. Zero leaves a retargeted motion the speed that it has.
  double initialVelocity = 0;

  constexpr Duration logicalDuration() const { return seconds(settling > 0 ? settling : response); }

  friend constexpr bool operator==(const Spring&, const Spring&) = default;

  static const Spring quick;  // leaving, folders, hover reveals
  static const Spring entry;  // what comes in: the bar, toasts, peeks
  static const Spring move;   // selection, reordering, switching
};

inline constexpr Spring Spring::quick{0.22, 0.85};
inline constexpr Spring Spring::entry{0.32, 0.78};
inline constexpr Spring Spring::move{0.28, 1.0};

}  // namespace orvel
