#pragma once

#include <adwaita.h>

#include <functional>

#include "Base/GRef.h"

namespace orvel {

// A value that eases out to its target over a time. Without a window on screen, or with animations
// switched off in the desktop's settings, a target is reached at once.
class EasedValue {
 public:
  // `widget` gives the frame clock and outlives this object.
  EasedValue(GtkWidget* widget, double initial, std::function<void(double)> apply);
  EasedValue(const EasedValue&) = delete;
  ~EasedValue();

  double value() const { return value_; }
  // Starts from the present value. `done` runs when the target is reached, unless another target or
  // value is set before. Zero seconds reach it at once.
  void animateTo(double target, double seconds, std::function<void()> done = {});
  void set(double value);

 private:
  void stop();

  GtkWidget* widget_;
  std::function<void(double)> apply_;
  std::function<void()> done_;
  GRef<AdwAnimation> animation_;
  gulong doneHandler_ = 0;
  double value_;
};

}  // namespace orvel
