#pragma once

#include <optional>
#include <vector>

#include "Desktop/ScrollGestures.h"

namespace orvel {

class BrowserStore;

// The two-finger swipe over the sidebar: the pages follow the fingers, and when they let go the
// nearer page takes over their speed. Positive travel leads to the next space.
class SpaceSwipe final : public ScrollGestures {
 public:
  explicit SpaceSwipe(BrowserStore& store) : store_(store) {}

  // Watches, and leaves every event to the others.
  bool handle(const ScrollEvent& event) override {
    watch(event);
    return false;
  }

 private:
  struct Sample {
    double time;
    double travel;
  };
  enum class End { Switches, GoesBack };

  void watch(const ScrollEvent& event);
  void track(double travel, double time);
  void forgetOldSamples(double time);
  // In points a second, over the samples that are kept.
  double speedOfFingers() const;
  void finish(double travel, double time, End end);

  BrowserStore& store_;
  std::optional<double> travel_;  // absent: no gesture is being followed
  std::vector<Sample> samples_;
  uint64_t generation_ = 0;  // grows with each gesture
};

}  // namespace orvel
