#include "platform/images/scaled_photo.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/images/jpeg_codec.h"
#include "platform/images/orientation.h"
#include "platform/images/pixel_loops.h"

namespace tolvane {

namespace {

/// The pixels of one direction that make one of the result.
struct Window {
  std::size_t first = 0;
  std::vector<std::int16_t> weights;  // their sum is wholeWeight
};

constexpr int weightBits = PixelLoops::weightBits;
constexpr int wholeWeight = 1 << weightBits;

/// Keys' cubic convolution with a = -1/2 ("Catmull-Rom"): as sharp as the picture, hardly ringing.
double cubic(double distance) {
  const double x = std::abs(distance);
  if (x >= 2) {
    return 0;
  }
  return x < 1 ? (1.5 * x - 2.5) * x * x + 1 : ((-0.5 * x + 2.5) * x - 4) * x + 2;
}

/// @param spacing of the result's pixels, in the picture's.
Window windowAround(double center, double spacing, int length) {
  const double reach = 2 * spacing;
  const int first = std::max(0, static_cast<int>(std::ceil(center - reach)));
  const int last = std::min(length - 1, static_cast<int>(std::floor(center + reach)));
  std::vector<double> shares;
  double sum = 0;
  for (int index = first; index <= last; ++index) {
    shares.push_back(cubic((index - center) / spacing));
    sum += shares.back();
  }
  // Each weight is what the rounded sums grow by, so that they end at the whole.
  Window window{static_cast<std::size_t>(first), {}};
  double reached = 0;
  int given = 0;
  for (const double share : shares) {
    reached += share;
    const int upToHere = static_cast<int>(std::lround(wholeWeight * reached / sum));
    window.weights.push_back(static_cast<std::int16_t>(upToHere - given));
    given = upToHere;
  }
  return window;
}

/// @param extent how much of the picture's length becomes `shorter` pixels.
std::vector<Window> windows(int length, double extent, int shorter) {
  const double ratio = extent / shorter;
  std::vector<Window> windows;
  windows.reserve(static_cast<std::size_t>(shorter));
  for (int index = 0; index < shorter; ++index) {
    windows.push_back(windowAround((index + 0.5) * ratio - 0.5, ratio, length));
  }
  return windows;
}

/// One row of the result, still as wide as the picture.
void blendRows(const Bitmap& picture, const Window& window, std::vector<std::int32_t>& sums) {
  std::fill(sums.begin(), sums.end(), 0);
  for (std::size_t index = 0; index < window.weights.size(); ++index) {
    const BytesView row = picture.row(static_cast<int>(window.first + index));
    PixelLoops::addWeighted(sums.data(), row.data(), window.weights[index], row.size());
  }
}

template <std::size_t Components>
void blendColumns(const Bytes& row, const std::vector<Window>& windows, std::uint8_t* out) {
  for (const Window& window : windows) {
    const std::uint8_t* pixel = row.data() + window.first * Components;
    for (std::size_t component = 0; component < Components; ++component) {
      int sum = wholeWeight / 2;
      for (std::size_t index = 0; index < window.weights.size(); ++index) {
        sum += window.weights[index] * pixel[index * Components + component];
      }
      *out++ = static_cast<std::uint8_t>(std::clamp(sum >> weightBits, 0, 255));
    }
  }
}

/// @param photo what the picture was decoded from.
Bitmap resampled(const JpegCodec::ReducedPhoto& reduced,
                 const JpegPhoto& photo,
                 int width,
                 int height) {
  const Bitmap& picture = reduced.picture;
  Bitmap result{width, height, picture.layout, {}};
  result.pixels.resize(result.stride() * static_cast<std::size_t>(height));
  const std::vector<Window> columns = windows(picture.width, photo.width * reduced.scale, width);
  const auto blend = picture.layout == PixelLayout::grey ? blendColumns<1> : blendColumns<4>;
  std::vector<std::int32_t> sums(picture.stride());
  Bytes row(picture.stride());
  std::uint8_t* out = result.pixels.data();
  for (const Window& rows : windows(picture.height, photo.height * reduced.scale, height)) {
    blendRows(picture, rows, sums);
    PixelLoops::bytesFromWeighted(row.data(), sums.data(), row.size());
    blend(row, columns, out);
    out += result.stride();
  }
  return result;
}

Bitmap inBgrx(Bitmap picture) {
  if (picture.layout == PixelLayout::bgrx) {
    return picture;
  }
  Bitmap colored{picture.width, picture.height, PixelLayout::bgrx, {}};
  colored.pixels.resize(picture.pixels.size() * 4);
  PixelLoops::bgrxFromGrey(colored.pixels.data(), picture.pixels.data(), picture.pixels.size());
  return colored;
}

}  // namespace

std::optional<Bitmap> scaledPhoto(const JpegPhoto& photo, int width, int height) {
  if (Orientation::swapsSides(photo.orientation)) {
    std::swap(width, height);
  }
  const std::optional<JpegCodec::ReducedPhoto> reduced =
      JpegCodec::decodeCovering(photo, width, height);
  if (!reduced) {
    return std::nullopt;
  }
  return inBgrx(Orientation::upright(resampled(*reduced, photo, width, height), photo.orientation));
}

}  // namespace tolvane
