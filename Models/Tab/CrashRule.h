#pragma once

#include <optional>
#include <utility>

#include "Base/Time.h"

namespace orvel {

// A page that crashes again soon is not loaded again.
class CrashRule {
 public:
  // Counts a crash; returns whether the last one was less than ten seconds ago.
  bool isRepeated(Date now) {
    constexpr Duration kMemory = 10s;
    const auto former = std::exchange(last_, now);
    return former && now - *former < kMemory;
  }

 private:
  std::optional<Date> last_;
};

}  // namespace orvel
