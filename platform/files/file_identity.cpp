#include "platform/files/file_identity.h"

#include <fcntl.h>

namespace tolvane {

std::optional<FileIdentity> FileIdentity::of(int descriptor) {
  struct stat status = {};
  return ::fstat(descriptor, &status) == 0 ? std::optional(FileIdentity(status)) : std::nullopt;
}

std::optional<FileIdentity> FileIdentity::of(int folder, const char* name) {
  struct stat status = {};
  return ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0
             ? std::optional(FileIdentity(status))
             : std::nullopt;
}

}  // namespace tolvane
