#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "platform/ending/last_act.h"
#include "platform/files/held_folder.h"

namespace tolvane {

/// A new private folder (mode 0700) with a random name. It goes with this object, wherever it was
/// moved to, and also when the process ends without waiting for its threads. Any thread.
///
/// A process that is killed leaves its folders behind. They are locked while it lives, so the next
/// object of the same kind in the same place removes those of this user whose lock is free.
class TransientFolder {
 public:
  static constexpr std::size_t wholeUuid = 36;

  /// @param prefix the beginning of the name, by which those left behind are found.
  /// @param letters of a UUID that follow, 8 or wholeUuid. A name with 8 may be anybody's, so such
  ///   a folder holds an empty file ".tolvane", by which it is known.
  /// @throws PlatformError when the folder cannot be made.
  TransientFolder(const std::filesystem::path& parent,
                  const std::string& prefix,
                  std::size_t letters = wholeUuid);
  ~TransientFolder();
  TransientFolder(const TransientFolder&) = delete;
  TransientFolder& operator=(const TransientFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] const HeldFolder& held() const { return folder_; }

 private:
  std::filesystem::path path_;
  HeldFolder folder_;
  LastAct atTheEnd_;
};

}  // namespace tolvane
