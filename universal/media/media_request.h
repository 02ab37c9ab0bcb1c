#pragma once

#include <optional>
#include <string_view>

#include "engine/primitives/value.h"
#include "universal/job/arguments.h"

namespace tolvane::UniversalEngine {

/// What is to become of one audio or video file, as far as the engine's arguments depend on it.
struct MediaRequest {
  std::string_view target;               ///< extension of the output: "mp4", "mp3", "gif", ...
  std::optional<std::string_view> tool;  ///< absent for a plain conversion
  const Value::Map& options;
  const Value::Map& probed;  ///< the input, as probe() tells

  [[nodiscard]] bool isVideo() const { return target == "mp4" || target == "mov"; }
};

}  // namespace tolvane::UniversalEngine
