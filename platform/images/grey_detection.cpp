#include "platform/images/grey_detection.h"

#include <cstddef>

#include "platform/images/pixel_loops.h"

namespace tolvane {

bool isGrey(const Bitmap& bitmap) {
  if (bitmap.layout == PixelLayout::grey || bitmap.layout == PixelLayout::rgba) {
    return bitmap.layout == PixelLayout::grey;
  }
  const auto isGreyRow =
      bitmap.layout == PixelLayout::rgb ? PixelLoops::isGreyRgb : PixelLoops::isGreyBgrx;
  for (int y = 0; y < bitmap.height; ++y) {
    if (!isGreyRow(bitmap.row(y).data(), static_cast<std::size_t>(bitmap.width))) {
      return false;
    }
  }
  return true;
}

}  // namespace tolvane
