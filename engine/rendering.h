#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/documents/pdf_document.h"
#include "platform/images/bitmap.h"

namespace tolvane {

enum class ImageFormat { png, jpeg };

/// The picture of a page, upright, `scale` pixels to the point, into `bitmap` (its memory is
/// reused).
/// @param page counted from 0.
/// @throws ConversionFailure when the page is empty, larger than 40 megapixels, or cannot be
/// painted.
void render(PdfDocument& document, int page, double scale, Bitmap& bitmap);

/// The picture of a page, upright, as large as fits into `maxWidth` x `maxHeight` pixels.
/// @return false when the page has no area.
/// @throws PlatformError when there is no such page or it cannot be painted.
[[nodiscard]] bool renderWithin(
    PdfDocument& document, int page, double maxWidth, double maxHeight, Bitmap& bitmap);

/// Said of a picture that ends before all of it was there.
inline constexpr const char* imageIsCutShort =
    "This image is cut short. Get a complete copy of it.";

/// The first picture of an image file, upright, its longer side at most `maxDimension` pixels.
/// @throws ConversionFailure when it cannot be decoded or `maxDimension` is outside 16...16,384.
[[nodiscard]] Bitmap loadImage(const std::filesystem::path& url, std::int64_t maxDimension);

/// Encodes and opens the result once more to see that it holds the picture.
/// @param quality of JPEG, clamped to 0.1...1.0; PNG ignores it. JPEG shows transparency as white.
/// @throws ConversionFailure
[[nodiscard]] Bytes encode(const Bitmap& bitmap, ImageFormat format, double quality);

/// A PNG preview of a page that fits into 150 x 190 pixels.
/// @throws ConversionFailure when there is no such page or it cannot be painted.
[[nodiscard]] Bytes preview(PdfDocument& document, std::int64_t page);

}  // namespace tolvane
