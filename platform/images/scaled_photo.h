#pragma once

#include <optional>

#include "platform/images/bitmap.h"
#include "platform/images/image_decoder.h"

namespace tolvane {

/// The photo turned upright and stretched to a size, no larger than its own in either direction:
/// decoded at the nearest size that the decoder offers, then resampled with a cubic filter.
/// @param photo its colour profile is not applied.
/// @return bgrx; nullopt when the photo is smaller than that, or damaged however little.
[[nodiscard]] std::optional<Bitmap> scaledPhoto(const JpegPhoto& photo, int width, int height);

}  // namespace tolvane
