#pragma once

#include <filesystem>

#include "platform/files/held_folder.h"

namespace tolvane {

/// The hidden folder ".tolvane-<UUID>" (mode 0700) inside the destination that holds everything a
/// job writes until it is placed. It stands on the destination's volume, so results are placed by
/// hard links.
///
/// The folder goes with this object, wherever it was moved to; what took its place stays. A process
/// that is killed leaves it behind; every workspace is locked by its process, and the next job of
/// the same user in the same folder removes the workspaces whose lock is free.
class JobWorkspace {
 public:
  /// @throws PlatformError when the folder cannot be created.
  explicit JobWorkspace(const std::filesystem::path& destination);
  ~JobWorkspace();
  JobWorkspace(const JobWorkspace&) = delete;
  JobWorkspace& operator=(const JobWorkspace&) = delete;

  /// Where programs find it.
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// Where this process finds it, whatever has its name meanwhile.
  [[nodiscard]] std::filesystem::path lastingPath() const { return folder_.lastingPath(); }

  /// @param inside a path in path(). @return the same file, where this process finds it.
  /// @throws ConversionFailure as requireInPlace
  [[nodiscard]] std::filesystem::path lasting(const std::filesystem::path& inside) const;

  /// @throws ConversionFailure when somebody has moved or replaced the workspace.
  void requireInPlace() const;

  /// Removes the workspaces of every job that still runs, for a process that is about to end
  /// without waiting for them. Any thread.
  static void removeAll();

 private:
  std::filesystem::path path_;
  HeldFolder folder_;
};

}  // namespace tolvane
