#pragma once

namespace orvel {

// One event of a two-finger scroll on a touchpad.
struct ScrollEvent {
  enum class Phase { Began, Changed, Ended, Cancelled };
  Phase phase = Phase::Changed;
  // Fingers have left the pad and the motion runs out by itself.
  bool isMomentum = false;
  // In pixels; content moves with the fingers: positive moves it right and down. Where the
  // interface runs from right to left, positive moves it left.
  double deltaX = 0;
  double deltaY = 0;
  // Seconds on a monotonic clock.
  double timestamp = 0;
  // How far the pointer stands from the window's leading edge, in points.
  double pointerX = 0;
};

// Is offered every scroll event of the main window before what lies below the pointer.
class ScrollGestures {
 public:
  virtual ~ScrollGestures() = default;
  // Answers whether the event was used; an event that was is not scrolled with.
  virtual bool handle(const ScrollEvent& event) = 0;
};

}  // namespace orvel
