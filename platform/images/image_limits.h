#pragma once

#include <cstdint>

namespace tolvane {

/// Decoders allocate nothing for pictures beyond 80 megapixels: 320 MB at four bytes a pixel.
[[nodiscard]] constexpr bool isWithinDecodingLimit(int width, int height) {
  constexpr std::int64_t pixels = 80'000'000;
  return width > 0 && height > 0 && static_cast<std::int64_t>(width) * height <= pixels;
}

}  // namespace tolvane
