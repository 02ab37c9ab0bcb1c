#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/files/transient_folder.h"

namespace tolvane {

/// A new folder for running engines beside the job's own. It goes with this object; what a killed
/// process left of that name goes with the next one.
class TemporaryGround {
 public:
  /// Stands in /tmp, else in /var/tmp, else in TMPDIR: that variable comes last, because a wrong
  /// value must not keep every engine from running.
  /// @param name the beginning of the folder's name.
  /// @throws PlatformError when it can be made in none of them.
  explicit TemporaryGround(const std::string& name);

  [[nodiscard]] const std::filesystem::path& path() const { return folder_->path(); }

 private:
  std::optional<TransientFolder> folder_;  // present from construction on
};

}  // namespace tolvane
