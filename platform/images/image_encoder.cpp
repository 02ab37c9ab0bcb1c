#include "platform/images/image_encoder.h"

#include <cmath>
#include <cstddef>
#include <memory>
#include <png.h>

#include "platform/files/platform_error.h"
#include "platform/images/image_limits.h"
#include "platform/images/jpeg_codec.h"
#include "platform/images/pixel_loops.h"
#include "platform/images/png_writer.h"

namespace tolvane::ImageEncoder {

namespace {

struct PngDeleter {
  void operator()(png_image* image) const { png_image_free(image); }
};

std::optional<EncodedSize> pngSize(BytesView encoded) {
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  const std::unique_ptr<png_image, PngDeleter> owner(&image);
  if (png_image_begin_read_from_memory(&image, encoded.data(), encoded.size()) == 0) {
    return std::nullopt;
  }
  return EncodedSize{static_cast<int>(image.width), static_cast<int>(image.height)};
}

}  // namespace

Bytes png(const Bitmap& bitmap) {
  requirePixels(bitmap);
  return writePng(bitmap);
}

Bytes jpeg(const Bitmap& bitmap, double quality) {
  requirePixels(bitmap);
  if (!(quality >= 0.1 && quality <= 1.0)) {
    throw PlatformError("A JPEG quality lies between 0.1 and 1.0.");
  }
  return JpegCodec::encode(bitmap, static_cast<int>(std::lround(quality * 100)));
}

Bitmap flattened(Bitmap bitmap) {
  requirePixels(bitmap);
  if (bitmap.layout != PixelLayout::rgba) {
    return bitmap;
  }
  Bitmap opaque{bitmap.width, bitmap.height, PixelLayout::rgb, {}};
  const auto pixels =
      static_cast<std::size_t>(bitmap.width) * static_cast<std::size_t>(bitmap.height);
  opaque.pixels.resize(pixels * 3);
  PixelLoops::rgbOverWhite(opaque.pixels.data(), bitmap.pixels.data(), pixels);
  return opaque;
}

std::optional<EncodedSize> reopen(BytesView encoded) {
  const bool isJpeg = encoded.size() > 2 && encoded[0] == 0xFF && encoded[1] == 0xD8;
  return isJpeg ? JpegCodec::size(encoded) : pngSize(encoded);
}

}  // namespace tolvane::ImageEncoder
