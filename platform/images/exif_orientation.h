#pragma once

#include "platform/files/bytes.h"

namespace tolvane {

/// @param exif the content of an EXIF block, from its byte-order mark on.
/// @return the orientation tag of the main picture, 1 to 8; 1 when there is none or it is damaged.
[[nodiscard]] int exifOrientation(BytesView exif);

}  // namespace tolvane
