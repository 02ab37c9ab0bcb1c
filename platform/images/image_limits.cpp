#include "platform/images/image_limits.h"

#include <cstddef>
#include <string>

namespace tolvane {

PlatformError beyondDecodingLimit() {
  return PlatformError("The image has no pixels or too many to decode.");
}

void requirePixels(const Bitmap& bitmap) {
  if (bitmap.width < 1 || bitmap.height < 1 ||
      bitmap.pixels.size() != bitmap.stride() * static_cast<std::size_t>(bitmap.height)) {
    throw PlatformError("A picture of " + std::to_string(bitmap.width) + " x " +
                        std::to_string(bitmap.height) + " pixels is incomplete.");
  }
}

}  // namespace tolvane
