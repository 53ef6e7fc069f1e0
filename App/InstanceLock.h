#pragma once

#include <filesystem>
#include <optional>

#include "Base/Time.h"

namespace orvel {

// Holds the data folder for this process: two programs must never write one session. Given back
// when the process ends, however it ends.
class InstanceLock {
 public:
  // Blocks while another process holds it: absent when it still does after `patience`. A folder in
  // which no lock can be made counts as free.
  static std::optional<InstanceLock> take(const std::filesystem::path& folder, Duration patience);

  InstanceLock(InstanceLock&& other) noexcept;
  InstanceLock& operator=(InstanceLock&& other) noexcept;
  ~InstanceLock();

 private:
  explicit InstanceLock(int descriptor) : descriptor_(descriptor) {}
  int descriptor_;
};

}  // namespace orvel
