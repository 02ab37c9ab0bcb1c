#include "platform/files/directory_lock.h"

#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <system_error>

namespace tolvane {

std::optional<DirectoryLock> DirectoryLock::tryLock(const std::filesystem::path& folder) {
  Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!descriptor.isOpen() || ::flock(descriptor.number(), LOCK_EX | LOCK_NB) != 0) {
    return std::nullopt;
  }
  return DirectoryLock(std::move(descriptor));
}

std::filesystem::path DirectoryLock::folder() const {
  std::error_code ignored;
  return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor_.number()),
                                       ignored);
}

}  // namespace tolvane
