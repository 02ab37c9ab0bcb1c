#include "platform/images/orientation.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace tolvane::Orientation {

namespace {

/// Where the source byte of target pixel (x, y) lies: start + x * right + y * down.
struct Walk {
  std::ptrdiff_t start = 0;
  std::ptrdiff_t right = 0;
  std::ptrdiff_t down = 0;
};

Walk walkOf(const Bitmap& source, int orientation) {
  const std::ptrdiff_t pixel = bytesPerPixel(source.layout);
  const auto row = static_cast<std::ptrdiff_t>(source.stride());
  const std::ptrdiff_t lastPixel = row - pixel;
  const std::ptrdiff_t lastRow = row * (source.height - 1);
  switch (orientation) {
    case 2:
      return {lastPixel, -pixel, row};
    case 3:
      return {lastPixel + lastRow, -pixel, -row};
    case 4:
      return {lastRow, pixel, -row};
    case 5:
      return {0, row, pixel};
    case 6:
      return {lastRow, -row, pixel};
    case 7:
      return {lastPixel + lastRow, -row, -pixel};
    case 8:
      return {lastPixel, row, -pixel};
    default:
      return {0, pixel, row};
  }
}

/// Columns `left` to `right` and rows `top` to `bottom` of a picture, the last ones excluded.
struct Area {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

template <std::size_t pixelSize>
void copyArea(Bitmap& target, const Bitmap& source, const Walk& walk, const Area& area) {
  for (int y = area.top; y < area.bottom; ++y) {
    std::uint8_t* out = target.pixels.data() + static_cast<std::size_t>(y) * target.stride() +
                        static_cast<std::size_t>(area.left) * pixelSize;
    std::ptrdiff_t from = walk.start + area.left * walk.right + y * walk.down;
    for (int x = area.left; x < area.right; ++x, out += pixelSize, from += walk.right) {
      std::memcpy(out, source.pixels.data() + from, pixelSize);
    }
  }
}

/// Copies in squares, so that the rows a turned picture is read from stay in the cache.
template <std::size_t pixelSize>
void copySquares(Bitmap& target, const Bitmap& source, const Walk& walk) {
  constexpr int square = 64;
  for (int top = 0; top < target.height; top += square) {
    for (int left = 0; left < target.width; left += square) {
      const Area area{
          left, top, std::min(left + square, target.width), std::min(top + square, target.height)};
      copyArea<pixelSize>(target, source, walk, area);
    }
  }
}

}  // namespace

Bitmap upright(Bitmap picture, int orientation) {
  if (orientation < 2 || orientation > 8) {
    return picture;
  }
  Bitmap target{picture.width, picture.height, picture.layout, Bytes(picture.pixels.size())};
  if (swapsSides(orientation)) {
    std::swap(target.width, target.height);
  }
  const Walk walk = walkOf(picture, orientation);
  switch (bytesPerPixel(picture.layout)) {
    case 1:
      copySquares<1>(target, picture, walk);
      break;
    case 3:
      copySquares<3>(target, picture, walk);
      break;
    default:
      copySquares<4>(target, picture, walk);
      break;
  }
  return target;
}

}  // namespace tolvane::Orientation
