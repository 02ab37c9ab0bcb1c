#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane {

/// Where engines are looked for. PATH is never consulted.
struct EngineLocations {
  /// A program of ours that stands in for an engine by means of another one.
  struct Adapter {
    std::filesystem::path program;
    std::filesystem::path needed;  ///< the program without which the adapter is of no use
  };

  std::vector<std::filesystem::path> folders;  ///< tried in this order for every engine
  /// Engines with a list of their own, which replaces the folders. A '*' at the end of a folder's
  /// name stands for the rest of it; of several such folders the highest version comes first.
  std::map<std::string, std::vector<std::filesystem::path>, std::less<>> special = {};
  /// Tried after the folders.
  std::map<std::string, Adapter, std::less<>> adapters = {};

  /// The places where Linux systems install them: a package manager's prefix first, the system
  /// last.
  [[nodiscard]] static EngineLocations standard();

  /// The paths at which `engine` may stand, in the order in which they are tried.
  [[nodiscard]] std::vector<std::filesystem::path> candidates(std::string_view engine) const;
};

}  // namespace tolvane
