#include "App/InstanceLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <thread>
#include <utility>

#include "Base/FileSystem.h"

namespace orvel {

std::optional<InstanceLock> InstanceLock::take(const std::filesystem::path& folder,
                                               Duration patience) {
  constexpr Duration kBetween = 50ms;
  FileSystem::disk()->createFolders(folder);
  const int descriptor = open((folder / ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW,
                              S_IRUSR | S_IWUSR);
  const auto isHeld = [&] {
    return descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  };
  for (; isHeld(); patience -= kBetween) {
    if (patience <= Duration::zero()) {
      close(descriptor);
      return std::nullopt;
    }
    std::this_thread::sleep_for(kBetween);
  }
  return InstanceLock(descriptor);
}

InstanceLock::InstanceLock(InstanceLock&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

InstanceLock& InstanceLock::operator=(InstanceLock&& other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  return *this;
}

InstanceLock::~InstanceLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace orvel
