#include "platform/images/jpeg_codec.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <turbojpeg.h>
#include <utility>

#include "platform/files/platform_error.h"
#include "platform/images/grey_detection.h"

namespace tolvane::JpegCodec {

namespace {

struct TurboDeleter {
  void operator()(void* handle) const { tjDestroy(handle); }
};
using Turbo = std::unique_ptr<void, TurboDeleter>;

struct TurboBytesDeleter {
  void operator()(std::uint8_t* bytes) const { tjFree(bytes); }
};

/// The number of bytes from row to row, by which the library means rows without padding.
constexpr int packedRows = 0;

int turboLayout(PixelLayout layout) {
  switch (layout) {
    case PixelLayout::grey:
      return TJPF_GRAY;
    case PixelLayout::rgb:
      return TJPF_RGB;
    case PixelLayout::rgba:
      return TJPF_RGBX;
    case PixelLayout::bgrx:
      return TJPF_BGRX;
  }
  return TJPF_UNKNOWN;
}

/// @param bitmap its layout, and its size, which is that of the photo at one of the library's
/// scales.
std::optional<Bitmap> decode(const JpegPhoto& photo, Bitmap bitmap) {
  const Turbo turbo(tjInitDecompress());
  bitmap.pixels.resize(bitmap.stride() * static_cast<std::size_t>(bitmap.height));
  const int failed = tjDecompress2(turbo.get(),
                                   photo.data.data(),
                                   photo.data.size(),
                                   bitmap.pixels.data(),
                                   bitmap.width,
                                   packedRows,
                                   bitmap.height,
                                   turboLayout(bitmap.layout),
                                   TJFLAG_STOPONWARNING | TJFLAG_LIMITSCANS);
  if (failed != 0) {
    return std::nullopt;
  }
  return bitmap;
}

}  // namespace

Bytes encode(const Bitmap& bitmap, int quality) {
  // Grey pages of text and scans take a third less time without empty colors; they decode alike.
  const Turbo turbo(tjInitCompress());
  std::uint8_t* buffer = nullptr;
  unsigned long size = 0;
  const int failed = tjCompress2(turbo.get(),
                                 bitmap.pixels.data(),
                                 bitmap.width,
                                 packedRows,
                                 bitmap.height,
                                 turboLayout(bitmap.layout),
                                 &buffer,
                                 &size,
                                 isGrey(bitmap) ? TJSAMP_GRAY : TJSAMP_420,
                                 quality,
                                 0);
  const std::unique_ptr<std::uint8_t, TurboBytesDeleter> owner(buffer);
  if (failed != 0) {
    throw PlatformError(tjGetErrorStr2(turbo.get()));
  }
  return {buffer, buffer + size};
}

std::optional<ImageEncoder::EncodedSize> size(BytesView encoded) {
  const Turbo turbo(tjInitDecompress());
  ImageEncoder::EncodedSize size;
  int subsampling = 0;
  int colors = 0;
  const int failed = tjDecompressHeader3(turbo.get(),
                                         encoded.data(),
                                         encoded.size(),
                                         &size.width,
                                         &size.height,
                                         &subsampling,
                                         &colors);
  const bool hasPicture = failed == 0 && size.width > 0 && size.height > 0;  // not tables alone
  return hasPicture ? std::optional(size) : std::nullopt;
}

std::optional<Bitmap> decodeWithoutComplaint(const JpegPhoto& photo) {
  return decode(photo,
                {photo.width,
                 photo.height,
                 photo.components == 1 ? PixelLayout::grey : PixelLayout::rgb,
                 {}});
}

std::optional<ReducedPhoto> decodeCovering(const JpegPhoto& photo, int width, int height) {
  constexpr int parts = 8;
  const PixelLayout layout = photo.components == 1 ? PixelLayout::grey : PixelLayout::bgrx;
  for (int part = 1; part <= parts; ++part) {
    const tjscalingfactor scale{part, parts};
    Bitmap bitmap{TJSCALED(photo.width, scale), TJSCALED(photo.height, scale), layout, {}};
    if (bitmap.width >= width && bitmap.height >= height) {
      std::optional<Bitmap> decoded = decode(photo, std::move(bitmap));
      if (!decoded) {
        return std::nullopt;
      }
      return ReducedPhoto{*std::move(decoded), static_cast<double>(part) / parts};
    }
  }
  return std::nullopt;
}

}  // namespace tolvane::JpegCodec
