#include "platform/images/png_reader.h"

#include "tests/fuzz/reader.h"

void read(tolvane::BytesView input) {
  constexpr int maxDimension = 512;
  if (const auto picture = tolvane::readPlainPng(input, maxDimension)) {
    require(picture->width <= maxDimension && picture->height <= maxDimension);
    require(picture->pixels.size() == picture->stride() * std::size_t(picture->height));
  }
}
