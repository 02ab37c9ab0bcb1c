#include "platform/images/png_filters.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>

#include "platform/images/pixel_loops.h"

namespace tolvane::PngFilters {

namespace {

struct FromLeft {
  int operator()(int left, int /*above*/, int /*corner*/) const { return left; }
};

struct FromMean {
  int operator()(int left, int above, int /*corner*/) const { return (left + above) / 2; }
};

/// The neighbour that is nearest to left + above - corner.
struct FromNearest {
  int operator()(int left, int above, int corner) const {
    const int toLeft = std::abs(above - corner);
    const int toAbove = std::abs(left - corner);
    const int toCorner = std::abs(left + above - 2 * corner);
    const int aboveOrCorner = toAbove <= toCorner ? above : corner;
    return toLeft <= std::min(toAbove, toCorner) ? left : aboveOrCorner;
  }
};

template <std::size_t pixelSize, typename Prediction>
void restore(std::span<std::uint8_t> out, BytesView stored, BytesView above, Prediction predicted) {
  std::array<int, pixelSize> left = {};
  std::array<int, pixelSize> corner = {};
  for (std::size_t i = 0; i + pixelSize <= out.size(); i += pixelSize) {
    for (std::size_t component = 0; component < pixelSize; ++component) {
      const int over = above[i + component];
      const int value =
          (stored[i + component] + predicted(left[component], over, corner[component])) & 0xFF;
      out[i + component] = static_cast<std::uint8_t>(value);
      left[component] = value;
      corner[component] = over;
    }
  }
}

template <std::size_t pixelSize>
bool undoFor(std::uint8_t filter, std::span<std::uint8_t> out, BytesView stored, BytesView above) {
  switch (filter) {
    case 0:
      std::copy(stored.begin(), stored.end(), out.begin());
      return true;
    case 1:
      restore<pixelSize>(out, stored, above, FromLeft());
      return true;
    case 2:
      PixelLoops::add(out.data(), stored.data(), above.data(), out.size());
      return true;
    case 3:
      restore<pixelSize>(out, stored, above, FromMean());
      return true;
    case 4:
      restore<pixelSize>(out, stored, above, FromNearest());
      return true;
    default:
      return false;
  }
}

}  // namespace

bool undo(std::uint8_t filter,
          std::span<std::uint8_t> out,
          BytesView stored,
          BytesView above,
          int pixelSize) {
  switch (pixelSize) {
    case 1:
      return undoFor<1>(filter, out, stored, above);
    case 3:
      return undoFor<3>(filter, out, stored, above);
    default:
      return undoFor<4>(filter, out, stored, above);
  }
}

}  // namespace tolvane::PngFilters
