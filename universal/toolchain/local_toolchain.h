#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

#include "universal/toolchain/engine_locations.h"

namespace tolvane {

/// The one place where outside engines (ffmpeg, qpdf, magick, soffice, ...) are found and run.
class LocalToolchain {
 public:
  explicit LocalToolchain(EngineLocations locations = EngineLocations::standard())
      : locations_(std::move(locations)) {}

  /// @param engine its name as messages show it, such as "ffmpeg".
  /// @return the first candidate that is an executable file; nullopt when the engine is not
  /// installed.
  [[nodiscard]] std::optional<std::filesystem::path> find(std::string_view engine) const;

 private:
  EngineLocations locations_;
};

}  // namespace tolvane
