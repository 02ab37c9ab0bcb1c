#pragma once

#include <ctime>
#include <filesystem>
#include <optional>
#include <sys/types.h>

#include "platform/files/file_identity.h"

/// Giving a finished file its name in another folder of its file system, never replacing anything.
namespace tolvane::FilePlacement {

/// A file as it was when it got its name. Another file that has the name later differs, even where
/// the system uses a removed file's number again.
class PlacedFile {
 public:
  explicit PlacedFile(const struct stat& status);
  /// Removes the name if it still leads to this file.
  void removeFrom(const std::filesystem::path& name) const noexcept;

 private:
  FileIdentity identity_;
  off_t size_;
  timespec changed_;
};

struct Outcome {
  std::optional<PlacedFile> file;  ///< absent after a failure
  int error = 0;                   ///< errno of the failure; EEXIST when the name is taken
};

/// By a hard link; where the file system has none by a rename that never replaces; where it has not
/// that either by a copy into a new file, which is removed again when it cannot be finished. In a
/// folder that hands its group on (setgid), the file gets that group if the user may give it.
/// @param staged need not be there afterwards.
[[nodiscard]] Outcome place(const std::filesystem::path& staged,
                            const std::filesystem::path& name) noexcept;

}  // namespace tolvane::FilePlacement
