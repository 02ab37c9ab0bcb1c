#include "platform/images/jpeg_segments.h"

#include "platform/images/jpeg_photo.h"
#include "tests/fuzz/reader.h"

void read(tolvane::BytesView input) {
  using namespace tolvane;
  JpegSegments segments(input);
  while (const auto segment = segments.next()) {
    require(segment->payload.size() <= segment->whole.size());
    static_cast<void>(jpegFrame(*segment));
  }
  if (const auto photo = jpegPhoto(input)) {
    require(photo->components == 1 || photo->components == 3);
    require(photo->orientation >= 1 && photo->orientation <= 8);
  }
}
