#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "universal/toolchain/local_toolchain.h"

namespace tolvane {

/// What people need to know about one engine.
struct EngineStatus {
  std::string name;
  std::optional<std::filesystem::path> path;  ///< absent: not installed
  std::string version;                        ///< empty when it is absent or did not tell
  std::string packages;  ///< the Debian packages that bring it, separated by spaces; may be empty
};

/// Which engines this machine has and how they are confined.
struct EngineReport {
  std::vector<EngineStatus> engines;
  std::string confinement;  ///< one sentence

  /// Runs every engine that is found once, for its version. Takes a second or two when the office
  /// suite is among them.
  [[nodiscard]] static EngineReport make(
      const LocalToolchain& toolchain,
      const Confinement& confinement = Confinement::ofThisMachine());
};

}  // namespace tolvane
