#pragma once

#include <functional>

#include "Base/Observation.h"

namespace orvel {

class MemoryPressure {
 public:
  virtual ~MemoryPressure() = default;
  // `event` runs on the main thread each time that memory is short.
  [[nodiscard]] virtual Observation observe(std::function<void()> event) = 0;
};

}  // namespace orvel
