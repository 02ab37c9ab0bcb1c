#include <benchmark/benchmark.h>
#include <utility>

#include "platform/images/image_encoder.h"
#include "tests/support/pictures.h"

namespace {

using tolvane::Bitmap;
using tolvane::PixelLayout;

/// A rendered letter page: mostly white, with rows of dark marks.
Bitmap page() {
  Bitmap bitmap = {1224, 1584, PixelLayout::bgrx, {}};
  bitmap.pixels.assign(bitmap.stride() * 1584, 255);
  for (std::size_t offset = 0; offset < bitmap.pixels.size(); offset += 4) {
    const std::size_t row = offset / bitmap.stride();
    if (row % 28 < 12 && (offset / 4 * 2654435761U >> 7) % 5 == 0) {
      bitmap.pixels[offset] = bitmap.pixels[offset + 1] = bitmap.pixels[offset + 2] = 30;
    }
  }
  return bitmap;
}

void encode(benchmark::State& state, const Bitmap& bitmap, bool asJpeg) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(asJpeg ? tolvane::ImageEncoder::jpeg(bitmap, 0.9)
                                    : tolvane::ImageEncoder::png(bitmap));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bitmap.pixels.size()));
}

void pngOfAPage(benchmark::State& state) {
  encode(state, page(), false);
}
BENCHMARK(pngOfAPage)->Unit(benchmark::kMillisecond);

void pngOfAPhoto(benchmark::State& state) {
  encode(state, tolvane::support::gradient(4000, 3000, PixelLayout::rgb), false);
}
BENCHMARK(pngOfAPhoto)->Unit(benchmark::kMillisecond);

void jpegOfAPage(benchmark::State& state) {
  encode(state, page(), true);
}
BENCHMARK(jpegOfAPage)->Unit(benchmark::kMillisecond);

}  // namespace
