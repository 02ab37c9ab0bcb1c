#pragma once

#include <filesystem>
#include <string>

namespace tolvane {

/// A new folder for running engines that work on no document. It goes with this object.
class TemporaryGround {
 public:
  /// Stands in /tmp, else in /var/tmp, else in TMPDIR: that variable comes last, because a wrong
  /// value must not keep every engine from running.
  /// @param name the beginning of the folder's name.
  /// @throws PlatformError when it can be made in none of them.
  explicit TemporaryGround(const std::string& name);
  ~TemporaryGround();
  TemporaryGround(const TemporaryGround&) = delete;
  TemporaryGround& operator=(const TemporaryGround&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace tolvane
