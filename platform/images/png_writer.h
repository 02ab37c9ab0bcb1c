#pragma once

#include "platform/files/bytes.h"
#include "platform/images/bitmap.h"

namespace tolvane {

/// @return a PNG file: grey where every pixel is grey, else as ImageEncoder::png() describes.
/// @throws PlatformError when compression fails.
[[nodiscard]] Bytes writePng(const Bitmap& bitmap);

}  // namespace tolvane
