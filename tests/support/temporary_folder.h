#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::support {

/// A fresh folder for one test, removed with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::filesystem::path operator/(std::string_view name) const {
    return path_ / name;
  }

  /// Writes a file and returns its path.
  std::filesystem::path write(std::string_view name, std::string_view content) const;

  /// Names of all entries, hidden ones included, sorted.
  [[nodiscard]] std::vector<std::string> names() const;

 private:
  std::filesystem::path path_;
};

[[nodiscard]] std::string contentOf(const std::filesystem::path& file);

}  // namespace tolvane::support
