#pragma once

#include <filesystem>
#include <optional>

#include "platform/files/directory_lock.h"

namespace tolvane {

/// The hidden folder ".tolvane-<UUID>" (mode 0700) inside the destination that holds everything a
/// job writes until it is placed. It stands on the destination's volume, so results are placed by
/// hard links.
///
/// The folder goes with this object. A process that is killed leaves it behind; every workspace is
/// locked by its process, and the next job in the same folder removes the workspaces whose lock is
/// free.
class JobWorkspace {
 public:
  /// @throws PlatformError when the folder cannot be created.
  explicit JobWorkspace(const std::filesystem::path& destination);
  ~JobWorkspace();
  JobWorkspace(const JobWorkspace&) = delete;
  JobWorkspace& operator=(const JobWorkspace&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// Removes the workspaces of every job that still runs, for a process that is about to end
  /// without waiting for them. Any thread.
  static void removeAll();

 private:
  std::filesystem::path path_;
  std::optional<DirectoryLock> lock_;  // absent where the file system has no locks
};

}  // namespace tolvane
