#include "engine/rendering.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <optional>
#include <utility>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"
#include "platform/files/platform_error.h"
#include "platform/images/image_decoder.h"
#include "platform/images/image_encoder.h"

namespace tolvane {

namespace {

struct PageSize {
  double width = 0;
  double height = 0;
};

/// The size of the page as it is seen, in points.
PageSize uprightSize(PdfDocument& document, int page) {
  const PdfPageGeometry geometry = document.geometry(page);
  const bool lies = std::abs(geometry.rotation) % 180 == 90;
  return lies ? PageSize{geometry.height, geometry.width}
              : PageSize{geometry.width, geometry.height};
}

bool isPaintable(const PageSize& size) {
  return size.width > 0 && size.height > 0 && std::isfinite(size.width) &&
         std::isfinite(size.height);
}

int pixels(double length) {
  return std::max(1, static_cast<int>(std::lround(length)));
}

Bitmap flattenedOnWhite(const Bitmap& bitmap) {
  try {
    return ImageEncoder::flattened(bitmap);
  } catch (const std::bad_alloc&) {
    throw ConversionFailure::message("Insufficient memory to flatten this image.");
  } catch (const PlatformError&) {
    throw ConversionFailure::message("Could not flatten transparency.");
  }
}

/// Absent when the encoder fails or its bytes do not hold the picture.
std::optional<Bytes> verifiedBytes(const Bitmap& bitmap, ImageFormat format, double quality) {
  try {
    Bytes bytes = format == ImageFormat::jpeg ? ImageEncoder::jpeg(bitmap, quality)
                                              : ImageEncoder::png(bitmap);
    const auto size = ImageEncoder::reopen(bytes);
    const bool holds = size && size->width == bitmap.width && size->height == bitmap.height;
    return holds ? std::optional(std::move(bytes)) : std::nullopt;
  } catch (const PlatformError&) {
    return std::nullopt;
  }
}

}  // namespace

void render(PdfDocument& document, int page, double scale, Bitmap& bitmap) {
  const PageSize size = uprightSize(document, page);
  if (!isPaintable(size) || size.width * size.height * scale * scale > Limits::maxRenderedArea) {
    throw ConversionFailure::message("This page exceeds the 40 megapixel rendering limit.");
  }
  try {
    document.render(page, pixels(size.width * scale), pixels(size.height * scale), bitmap);
  } catch (const PlatformError&) {
    throw ConversionFailure::message("This page could not be rendered.");
  }
}

bool renderWithin(
    PdfDocument& document, int page, double maxWidth, double maxHeight, Bitmap& bitmap) {
  const PageSize size = uprightSize(document, page);
  if (!isPaintable(size)) {
    return false;
  }
  const double scale = std::min(maxWidth / size.width, maxHeight / size.height);
  document.render(page, pixels(size.width * scale), pixels(size.height * scale), bitmap);
  return true;
}

Bitmap loadImage(const std::filesystem::path& url, std::int64_t maxDimension) {
  try {
    if (maxDimension >= Limits::minRequestedSide && maxDimension <= Limits::maxImageSide) {
      return imageDecoder().decode(url, static_cast<int>(maxDimension));
    }
  } catch (const IncompleteImage&) {
    throw ConversionFailure::message(imageIsCutShort);
  } catch (const PlatformError&) {
  } catch (const std::bad_alloc&) {
  }
  throw ConversionFailure::message(
      "Could not decode the image. Use a dimension between 16 and 16,384 pixels.");
}

Bytes encode(const Bitmap& bitmap, ImageFormat format, double quality) {
  const bool needsFlattening = format == ImageFormat::jpeg && bitmap.layout == PixelLayout::rgba;
  const Bitmap flattened = needsFlattening ? flattenedOnWhite(bitmap) : Bitmap();
  // Written so that NaN, too, ends in the bounds.
  const double clamped = quality >= 0.1 ? std::min(quality, 1.0) : 0.1;
  if (auto bytes = verifiedBytes(needsFlattening ? flattened : bitmap, format, clamped)) {
    return *std::move(bytes);
  }
  throw ConversionFailure::message("The output image could not be verified.");
}

Bytes preview(PdfDocument& document, std::int64_t page) {
  if (page < 0 || page >= document.pageCount()) {
    throw ConversionFailure::message("That page no longer exists.");
  }
  try {
    const int index = static_cast<int>(page);
    constexpr double maxWidth = 150;
    constexpr double maxHeight = 190;
    Bitmap bitmap;
    if (renderWithin(document, index, maxWidth, maxHeight, bitmap)) {
      return ImageEncoder::png(bitmap);
    }
  } catch (const PlatformError&) {
  }
  throw ConversionFailure::message("Could not preview this page.");
}

}  // namespace tolvane
