#include "platform/images/image_header.h"

#include "tests/fuzz/reader.h"

/// What has the header of an image is not passed over beforehand.
void read(tolvane::BytesView input) {
  const bool isImage = tolvane::mayBeImage(input);
  require(!tolvane::imageHeader(input) || isImage);
}
