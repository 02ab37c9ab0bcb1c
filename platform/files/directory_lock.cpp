#include "platform/files/directory_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace tolvane {

std::optional<DirectoryLock> DirectoryLock::tryLock(const std::filesystem::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (descriptor < 0) {
    return std::nullopt;
  }
  DirectoryLock lock(descriptor);
  if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    return std::nullopt;
  }
  return lock;
}

DirectoryLock::DirectoryLock(DirectoryLock&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

DirectoryLock& DirectoryLock::operator=(DirectoryLock&& other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  return *this;
}

DirectoryLock::~DirectoryLock() {
  if (descriptor_ >= 0) {
    ::close(descriptor_);
  }
}

}  // namespace tolvane
