#pragma once

#include <cstdint>

#include "engine/primitives/value.h"

namespace tolvane::UniversalEngine {

/// Pixels, from the upper left corner of a picture or a frame.
struct Rectangle {
  std::int64_t x;
  std::int64_t y;
  std::int64_t width;
  std::int64_t height;

  /// Whether it lies in a picture of that size; its edges may touch.
  [[nodiscard]] bool fitsInto(std::int64_t pictureWidth, std::int64_t pictureHeight) const;
};

/// The options "x", "y", "width" and "height"; 0, 0, 100 and 100 when they are absent.
/// @param minimumSide the least width and height.
/// @throws ConversionFailure for the first that is out of bounds, as integer() does.
[[nodiscard]] Rectangle rectangle(const Value::Map& options, std::int64_t minimumSide);

}  // namespace tolvane::UniversalEngine
