#pragma once

#include <filesystem>
#include <optional>
#include <utility>

#include "platform/files/descriptor.h"

namespace tolvane {

/// An exclusive, advisory lock on a folder. The system releases it when the process ends, however
/// it ends.
class DirectoryLock {
 public:
  /// @return nullopt when another process holds the lock or the folder cannot be opened.
  [[nodiscard]] static std::optional<DirectoryLock> tryLock(const std::filesystem::path& folder);

  /// Where the folder is now: it, or one above it, may have been moved. Empty when nobody can tell.
  [[nodiscard]] std::filesystem::path folder() const;

 private:
  explicit DirectoryLock(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}

  Descriptor descriptor_;
};

}  // namespace tolvane
