#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "platform/desktop/user_defaults.h"

namespace tolvane {

/// The user defaults in a JSON file of one flat object, whose other members stay as they are. Main
/// thread only.
class FileUserDefaults final : public UserDefaults {
 public:
  /// @param file read at once; one that is missing or damaged counts as empty, and is replaced
  /// when a text is stored. Normally UserFolders::configuration() / "tolvane/settings.json".
  explicit FileUserDefaults(std::filesystem::path file);

  [[nodiscard]] std::optional<std::string> text(const std::string& key) const override;
  /// The file is replaced as a whole, or stays as it was.
  void setText(const std::string& key, const std::string& text) override;

 private:
  std::filesystem::path file_;
  std::map<std::string, std::string> texts_;
};

}  // namespace tolvane
