#pragma once

#include <functional>
#include <utility>

namespace orvel {

// A subscription to something that tells of its changes by calling back; destroying it ends it.
class Observation {
 public:
  Observation() = default;
  explicit Observation(std::function<void()> invalidate) : invalidate_(std::move(invalidate)) {}
  Observation(Observation&& other) noexcept
      : invalidate_(std::exchange(other.invalidate_, nullptr)) {}
  Observation& operator=(Observation&& other) noexcept {
    if (this != &other) {
      invalidate();
      invalidate_ = std::exchange(other.invalidate_, nullptr);
    }
    return *this;
  }
  ~Observation() { invalidate(); }

  // Safe to call more than once, and from inside the callback.
  void invalidate() {
    if (const auto action = std::exchange(invalidate_, nullptr)) action();
  }

 private:
  std::function<void()> invalidate_;
};

}  // namespace orvel
