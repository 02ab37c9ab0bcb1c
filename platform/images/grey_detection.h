#pragma once

#include "platform/images/bitmap.h"

namespace tolvane {

/// Whether every pixel of an opaque picture is grey, so that one component holds it without loss.
/// False for pictures with alpha.
[[nodiscard]] bool isGrey(const Bitmap& bitmap);

}  // namespace tolvane
