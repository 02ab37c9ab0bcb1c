#include "platform/images/color_profile.h"

#include "tests/fuzz/reader.h"

/// sRGB is a profile of three components.
void read(tolvane::BytesView input) {
  const bool isColored = tolvane::ColorProfile::fits(input, 3);
  const bool isGrey = tolvane::ColorProfile::fits(input, 1);
  require(!isColored || !isGrey);
  require(!tolvane::ColorProfile::isStandardRgb(input) || isColored);
}
