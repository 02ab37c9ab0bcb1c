#pragma once

#include <optional>
#include <sys/stat.h>

namespace tolvane {

/// Which file it is, whatever its name. Any thread.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;

  explicit FileIdentity(const struct stat& status) : device(status.st_dev), inode(status.st_ino) {}

  /// @return nullopt when the descriptor cannot be asked.
  [[nodiscard]] static std::optional<FileIdentity> of(int descriptor);
  /// Of the entry itself: a link is not followed.
  /// @param folder an open folder, or AT_FDCWD. @return nullopt when there is none of that name.
  [[nodiscard]] static std::optional<FileIdentity> of(int folder, const char* name);

  bool operator==(const FileIdentity&) const = default;
};

}  // namespace tolvane
