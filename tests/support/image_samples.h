#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/images/bitmap.h"

namespace tolvane::support {

/// Smooth, with another slope in each component, so that swapped components and rows show.
inline Bitmap smooth(int width, int height, PixelLayout layout) {
  Bitmap bitmap{width, height, layout, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (int component = 0; component < bytesPerPixel(layout); ++component) {
        const int value = component * 40 + x * (component + 1) * 90 / width + y * 60 / height;
        bitmap.pixels.push_back(static_cast<std::uint8_t>(value));
      }
    }
  }
  return bitmap;
}

inline Bitmap plain(int width, int height, PixelLayout layout, std::uint8_t value) {
  Bitmap bitmap{width, height, layout, {}};
  bitmap.pixels.assign(bitmap.stride() * static_cast<std::size_t>(height), value);
  return bitmap;
}

}  // namespace tolvane::support
