#include "platform/files/directory_lock.h"

#include <fcntl.h>
#include <sys/file.h>

namespace tolvane {

std::optional<DirectoryLock> DirectoryLock::tryLock(const std::filesystem::path& folder) {
  Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!descriptor.isOpen() || ::flock(descriptor.number(), LOCK_EX | LOCK_NB) != 0) {
    return std::nullopt;
  }
  return DirectoryLock(std::move(descriptor));
}

}  // namespace tolvane
