#include "platform/images/exif_orientation.h"

#include "tests/fuzz/reader.h"

void read(tolvane::BytesView input) {
  const int orientation = tolvane::exifOrientation(input);
  require(orientation >= 1 && orientation <= 8);
}
