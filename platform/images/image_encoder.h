#pragma once

#include <optional>

#include "platform/files/bytes.h"
#include "platform/images/bitmap.h"

/// Encoding into memory. Pure functions of their arguments; each throws PlatformError when the
/// library refuses, std::bad_alloc when memory is short.
namespace tolvane::ImageEncoder {

/// Lossless; rgb and bgrx pictures whose pixels are all grey are written as grey. The bytes may
/// differ between runs and machines, the pixels never do.
[[nodiscard]] Bytes png(const Bitmap& bitmap);

/// @param quality 0.1 to 1.0. The bitmap must be opaque: see flattened().
[[nodiscard]] Bytes jpeg(const Bitmap& bitmap, double quality);

/// The picture over opaque white. Pictures without alpha come back as they are.
[[nodiscard]] Bitmap flattened(Bitmap bitmap);

struct EncodedSize {
  int width = 0;
  int height = 0;
};

/// Opens encoded PNG or JPEG bytes with an independent reader and reads the header.
/// @return nullopt when they hold no picture.
[[nodiscard]] std::optional<EncodedSize> reopen(BytesView encoded);

}  // namespace tolvane::ImageEncoder
