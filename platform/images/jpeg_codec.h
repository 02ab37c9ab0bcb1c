#pragma once

#include <optional>

#include "platform/files/bytes.h"
#include "platform/images/bitmap.h"
#include "platform/images/image_decoder.h"
#include "platform/images/image_encoder.h"

/// What libjpeg-turbo does for us.
namespace tolvane::JpegCodec {

/// @param bitmap complete and opaque.
/// @param quality 1 to 100.
/// @throws PlatformError in the library's words.
[[nodiscard]] Bytes encode(const Bitmap& bitmap, int quality);

/// Of a whole file, from its header.
[[nodiscard]] std::optional<ImageEncoder::EncodedSize> size(BytesView encoded);

/// The photo's pixels as they are stored: neither turned nor converted from its colour profile.
/// @return nullopt when the library finds anything to complain about, however small; a more patient
/// reader must judge such a file.
[[nodiscard]] std::optional<Bitmap> decodeWithoutComplaint(const JpegPhoto& photo);

/// A photo decoded at a scale of its size.
struct ReducedPhoto {
  Bitmap picture;    ///< grey or bgrx
  double scale = 1;  ///< of the last column and row, a part may lie outside the photo
};

/// As above, at the least of the library's scales, which are eighths, at which the picture covers
/// `width` x `height`. @return nullopt also when even the photo itself does not.
[[nodiscard]] std::optional<ReducedPhoto> decodeCovering(const JpegPhoto& photo,
                                                         int width,
                                                         int height);

}  // namespace tolvane::JpegCodec
