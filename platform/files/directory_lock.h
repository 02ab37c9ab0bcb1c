#pragma once

#include <filesystem>
#include <optional>

namespace tolvane {

/// An exclusive, advisory lock on a folder. The system releases it when the process ends, however
/// it ends.
class DirectoryLock {
 public:
  /// @return nullopt when another process holds the lock or the folder cannot be opened.
  [[nodiscard]] static std::optional<DirectoryLock> tryLock(const std::filesystem::path& folder);

  DirectoryLock(const DirectoryLock&) = delete;
  DirectoryLock& operator=(const DirectoryLock&) = delete;
  DirectoryLock(DirectoryLock&& other) noexcept;
  DirectoryLock& operator=(DirectoryLock&& other) noexcept;
  ~DirectoryLock();

 private:
  explicit DirectoryLock(int descriptor) : descriptor_(descriptor) {}

  int descriptor_;  // owned; -1 once moved away
};

}  // namespace tolvane
