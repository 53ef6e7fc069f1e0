#pragma once

#include <optional>
#include <vector>

#include "Desktop/EventMonitors.h"

namespace orvel {

class BrowserStore;

// The two-finger swipe over the sidebar: the pages follow the fingers, and when they let go the
// nearer page takes over their speed. Positive travel leads to the next space.
class SpaceSwipe {
 public:
  explicit SpaceSwipe(BrowserStore& store) : store_(store) {}

  // From then on it watches, and leaves every event to the others.
  void install();

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
  Observation monitor_;
};

}  // namespace orvel
