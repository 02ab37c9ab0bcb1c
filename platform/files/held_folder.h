#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/files/descriptor.h"

namespace tolvane {

/// A private folder (mode 0700) of this process's user that is held open, so that whoever renames
/// or replaces it cannot make another one pass for it. Any thread.
class HeldFolder {
 public:
  /// Makes a folder, permissions exact whatever the mask.
  /// @param path its parent must be there.
  /// @throws PlatformError when it cannot be made, or was replaced before it could be opened.
  [[nodiscard]] static HeldFolder make(const std::filesystem::path& path);

  /// @return nullopt for a link, a folder of another user, or one that others may enter.
  [[nodiscard]] static std::optional<HeldFolder> openPrivate(const std::filesystem::path& path);

  /// An exclusive, advisory lock, which the system releases when the process ends, however it ends.
  /// @return false when another process holds it, or where there are no locks.
  [[nodiscard]] bool tryLock() const;

  /// Whether the path that it was made or opened under still leads to it.
  [[nodiscard]] bool isInPlace() const;

  /// A path that leads to the folder, wherever it is now; for this process only.
  [[nodiscard]] std::filesystem::path lastingPath() const;

  /// Seconds since its content was last changed.
  [[nodiscard]] double age() const;

  /// Removes it with all that is in it, wherever it was moved to.
  /// @return whether it is gone.
  bool removeQuietly() const noexcept;

 private:
  HeldFolder(const std::filesystem::path& path, Descriptor parent);

  [[nodiscard]] bool removeWhereItIsNow() const;

  std::filesystem::path path_;
  std::string name_;
  Descriptor parent_;
  Descriptor folder_;
};

}  // namespace tolvane
