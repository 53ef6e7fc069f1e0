#include "App/InstanceLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "Base/FileSystem.h"

namespace orvel {

std::optional<InstanceLock> InstanceLock::take(const std::filesystem::path& folder) {
  FileSystem::disk()->createFolders(folder);
  const int descriptor = open((folder / ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW,
                              S_IRUSR | S_IWUSR);
  if (descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
    close(descriptor);
    return std::nullopt;
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
