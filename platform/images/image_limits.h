#pragma once

#include <cstdint>

#include "platform/files/platform_error.h"
#include "platform/images/bitmap.h"

namespace tolvane {

/// Decoders allocate nothing for larger pictures: 320 MB at four bytes a pixel.
inline constexpr std::int64_t maxDecodedPixels = 80'000'000;

[[nodiscard]] constexpr bool isWithinDecodingLimit(int width, int height) {
  return width > 0 && height > 0 && static_cast<std::int64_t>(width) * height <= maxDecodedPixels;
}

[[nodiscard]] PlatformError beyondDecodingLimit();

/// @throws PlatformError when the bitmap is empty or its pixels do not fill its size.
void requirePixels(const Bitmap& bitmap);

}  // namespace tolvane
