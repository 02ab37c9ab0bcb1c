#include "universal/job/rectangle.h"

#include "engine/primitives/limits.h"
#include "universal/job/option_readers.h"

namespace tolvane::UniversalEngine {

bool Rectangle::fitsInto(std::int64_t pictureWidth, std::int64_t pictureHeight) const {
  return x + width <= pictureWidth && y + height <= pictureHeight;
}

Rectangle rectangle(const Value::Map& options, std::int64_t minimumSide) {
  constexpr std::int64_t defaultSide = 100;
  const auto read = [&options](const char* key, std::int64_t fallback, std::int64_t minimum) {
    return integer(options, key, fallback, minimum, Limits::maxImageSide);
  };
  // Members of a braced list are read in order; the first bad one is reported.
  return {read("x", 0, 0),
          read("y", 0, 0),
          read("width", defaultSide, minimumSide),
          read("height", defaultSide, minimumSide)};
}

}  // namespace tolvane::UniversalEngine
