#pragma once

#include "platform/files/bytes.h"

/// What ICC profiles say, without a colour engine.
namespace tolvane::ColorProfile {

/// Whether the profile describes pictures of so many components: 1 means grey, 3 RGB.
[[nodiscard]] bool fits(BytesView profile, int components);

/// Whether the profile means sRGB: its primaries and its tone curves are those of sRGB, whatever it
/// is called. Pictures with such a profile need no conversion.
[[nodiscard]] bool isStandardRgb(BytesView profile);

}  // namespace tolvane::ColorProfile
