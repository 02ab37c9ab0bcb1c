#pragma once

#include "platform/images/bitmap.h"

/// The eight ways in which a camera can have stored a picture (EXIF, TIFF).
namespace tolvane::Orientation {

/// Whether width and height change places when the picture is turned upright.
[[nodiscard]] constexpr bool swapsSides(int orientation) {
  return orientation >= 5;
}

/// @param orientation 1 to 8; 1 gives the picture itself.
[[nodiscard]] Bitmap upright(Bitmap picture, int orientation);

}  // namespace tolvane::Orientation
