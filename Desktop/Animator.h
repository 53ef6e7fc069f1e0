#pragma once

#include <functional>

#include "Base/Scheduler.h"
#include "Base/Spring.h"

namespace orvel {

// Makes changes of the model that the interface shows as motion.
//
//   animator.animate(Spring::quick, [this] { toast.set(std::nullopt); });
//
// The change itself happens at once, inside a `Transaction`; only its picture takes time.
class Animator {
 public:
  // `isMotionWanted` returns whether there is an interface whose desktop has animations switched
  // on; empty: there is none.
  explicit Animator(Scheduler& scheduler, std::function<bool()> isMotionWanted = {})
      : scheduler_(scheduler), isMotionWanted_(std::move(isMotionWanted)) {}

  bool isMotionWanted() const { return isMotionWanted_ && isMotionWanted_(); }

  // Runs `change` at once. `completion` runs exactly once, when the motion has logically finished
  // (after the spring's `logicalDuration`, on a later turn, whether or not a window shows it);
  // without motion it runs before this returns.
  void animate(const Spring& spring, const std::function<void()>& change,
               std::function<void()> completion = {});

 private:
  Scheduler& scheduler_;
  std::function<bool()> isMotionWanted_;
};

}  // namespace orvel
