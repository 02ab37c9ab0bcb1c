#pragma once

#include <cstddef>
#include <optional>

#include "platform/files/bytes.h"
#include "platform/images/image_decoder.h"

namespace tolvane {

/// Enough for the headers of all but odd files: cameras put up to 64 KB of EXIF and a colour
/// profile before the size.
inline constexpr std::size_t imageHeaderLimit = 262144;

/// @param start at least the first 12 bytes of a file, if it has so many.
/// @return false when no decoder would take it for an image; spares it the loading of them all.
[[nodiscard]] bool mayBeImage(BytesView start);

/// @param start the first bytes of a file.
/// @return nullopt when they do not settle that this is a JPEG or PNG, and its size.
[[nodiscard]] std::optional<ImageHeader> imageHeader(BytesView start);

}  // namespace tolvane
