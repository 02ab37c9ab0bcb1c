#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/files/bytes.h"

namespace tolvane {

/// How one pixel lies in memory. Eight bits a component, sRGB (or sRGB-weighted grey); alpha is
/// straight, not premultiplied.
enum class PixelLayout {
  grey,  ///< 1 byte
  rgb,   ///< 3 bytes
  rgba,  ///< 4 bytes
  bgrx   ///< 4 bytes, the last without meaning: what cairo calls RGB24 on a little-endian machine
};

[[nodiscard]] constexpr int bytesPerPixel(PixelLayout layout) {
  return layout == PixelLayout::grey ? 1 : layout == PixelLayout::rgb ? 3 : 4;
}

/// A picture in memory, rows from the top, without padding between them.
struct Bitmap {
  int width = 0;
  int height = 0;
  PixelLayout layout = PixelLayout::rgb;
  Bytes pixels;

  [[nodiscard]] std::size_t stride() const {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(bytesPerPixel(layout));
  }
  [[nodiscard]] BytesView row(int y) const {
    return BytesView(pixels).subspan(static_cast<std::size_t>(y) * stride(), stride());
  }
};

}  // namespace tolvane
