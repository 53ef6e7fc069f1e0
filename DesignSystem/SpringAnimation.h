#pragma once

#include <adwaita.h>

#include <functional>

#include "Base/GRef.h"
#include "Base/Spring.h"

namespace orvel {

// A value that moves by springs of mass 1. A new target takes over the present value, and its
// velocity unless the spring brings one.
// Without a window on screen, or with animations switched off in the desktop's settings, a target
// is reached at once.
class SpringAnimation {
 public:
  // `apply` gets each value on the way and the last one exactly; `widget` gives the frame clock and
  // outlives this object.
  SpringAnimation(GtkWidget* widget, double initial, std::function<void(double)> apply);
  SpringAnimation(const SpringAnimation&) = delete;
  ~SpringAnimation();

  double value() const { return value_; }
  double target() const { return target_; }
  bool isMoving() const;

  // Does nothing when it moves there already.
  void animateTo(double target, const Spring& spring);
  // Ends any motion.
  void set(double value);

 private:
  static void step(double value, gpointer self);

  GtkWidget* widget_;
  std::function<void(double)> apply_;
  GRef<AdwAnimation> animation_;
  double value_;
  double target_;
};

}  // namespace orvel
