#pragma once

#include <filesystem>

#include "platform/files/transient_folder.h"

namespace tolvane {

/// The hidden folder ".tolvane-<UUID>" (mode 0700) inside the destination that holds everything a
/// job writes until it is placed. It stands on the destination's volume, so results are placed by
/// hard links.
///
/// The folder goes with this object, wherever it was moved to; what took its place stays. A process
/// that is killed leaves it behind, and the next job of the same user in the same folder removes
/// it.
class JobWorkspace {
 public:
  /// @throws PlatformError when the folder cannot be created.
  explicit JobWorkspace(const std::filesystem::path& destination);

  /// Where programs find it.
  [[nodiscard]] const std::filesystem::path& path() const { return folder_.path(); }
  /// Where this process finds it, whatever has its name meanwhile.
  [[nodiscard]] std::filesystem::path lastingPath() const { return folder_.held().lastingPath(); }

  /// @param inside a path in path(). @return the same file, where this process finds it.
  /// @throws ConversionFailure as requireInPlace
  [[nodiscard]] std::filesystem::path lasting(const std::filesystem::path& inside) const;

  /// @throws ConversionFailure when somebody has moved or replaced the workspace.
  void requireInPlace() const;

 private:
  TransientFolder folder_;
};

}  // namespace tolvane
