#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "engine/primitives/value.h"

namespace tolvane {

/// The options of the native actions. A key that is missing or of the wrong type keeps its default.
struct JobOptions {
  double quality = 0.9;              ///< of JPEG; clamped to 0.1...1.0 where it is used
  std::int64_t maxDimension = 1600;  ///< "resize": the longer side in pixels, 16...16,384
  std::string range;                 ///< pages such as "1-3, 5"; blank means all
  std::optional<std::vector<std::int64_t>> pages;  ///< "edit_pdf": page indices in the new order
  std::map<std::string, std::int64_t> rotations;   ///< "edit_pdf": page index in decimal -> degrees

  [[nodiscard]] static JobOptions read(const Value::Map& options);
};

}  // namespace tolvane
