#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane {

/// Where engines are looked for. PATH is never consulted.
struct EngineLocations {
  std::vector<std::filesystem::path> folders;  ///< tried in this order for every engine
  /// Engines with a list of their own, which replaces the folders.
  std::map<std::string, std::vector<std::filesystem::path>, std::less<>> special;

  /// The places where Linux systems install them: a package manager's prefix first, the system
  /// last.
  [[nodiscard]] static EngineLocations standard();

  /// The paths at which `engine` may stand, in the order in which they are tried.
  [[nodiscard]] std::vector<std::filesystem::path> candidates(std::string_view engine) const;
};

}  // namespace tolvane
