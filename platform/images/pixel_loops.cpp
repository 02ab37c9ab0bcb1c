#include "platform/images/pixel_loops.h"

#include <algorithm>
#include <cstring>

// The resolvers that choose a version run before the sanitizers are ready.
#if defined(__x86_64__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) && \
    !defined(__clang__)
#define TOLVANE_VECTORS __attribute__((target_clones("avx2", "default")))
#else
#define TOLVANE_VECTORS
#endif

namespace tolvane::PixelLoops {

using Byte = std::uint8_t;

TOLVANE_VECTORS
bool isGreyRgb(const Byte* __restrict row, std::size_t pixels) {
  unsigned difference = 0;
  for (std::size_t i = 0; i < pixels; ++i) {
    const Byte* pixel = row + 3 * i;
    difference |= static_cast<unsigned>((pixel[0] ^ pixel[1]) | (pixel[0] ^ pixel[2]));
  }
  return difference == 0;
}

TOLVANE_VECTORS
bool isGreyBgrx(const Byte* __restrict row, std::size_t pixels) {
  std::uint32_t difference = 0;
  for (std::size_t i = 0; i < pixels; ++i) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, row + 4 * i, sizeof pixel);
    difference |= pixel ^ (pixel >> 8U);
  }
  return (difference & 0xFFFFU) == 0;
}

TOLVANE_VECTORS
void greyFromRgb(Byte* __restrict out, const Byte* __restrict row, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i) {
    out[i] = row[3 * i + 1];
  }
}

TOLVANE_VECTORS
void greyFromBgrx(Byte* __restrict out, const Byte* __restrict row, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i) {
    out[i] = row[4 * i + 1];
  }
}

TOLVANE_VECTORS
void bgrxFromGrey(Byte* __restrict out, const Byte* __restrict row, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i) {
    const std::uint32_t pixel = row[i] * 0x010101U | 0xFF000000U;
    std::memcpy(out + 4 * i, &pixel, sizeof pixel);
  }
}

TOLVANE_VECTORS
void rgbFromBgrx(Byte* __restrict out, const Byte* __restrict row, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i) {
    out[3 * i] = row[4 * i + 2];
    out[3 * i + 1] = row[4 * i + 1];
    out[3 * i + 2] = row[4 * i];
  }
}

TOLVANE_VECTORS
void rgbOverWhite(Byte* __restrict out, const Byte* __restrict rgba, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i) {
    const unsigned alpha = rgba[4 * i + 3];
    const unsigned white = 255U * (255U - alpha) + 127U;
    for (std::size_t component = 0; component < 3; ++component) {
      out[3 * i + component] = static_cast<Byte>((rgba[4 * i + component] * alpha + white) / 255U);
    }
  }
}

TOLVANE_VECTORS
void addWeighted(std::int32_t* __restrict sums,
                 const Byte* __restrict row,
                 std::int16_t weight,
                 std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i) {
    sums[i] += row[i] * weight;
  }
}

TOLVANE_VECTORS
void bytesFromWeighted(Byte* __restrict out,
                       const std::int32_t* __restrict sums,
                       std::size_t bytes) {
  constexpr std::int32_t half = 1 << (weightBits - 1);
  for (std::size_t i = 0; i < bytes; ++i) {
    const std::int32_t value = (sums[i] + half) >> weightBits;
    out[i] = static_cast<Byte>(std::clamp(value, 0, 255));
  }
}

TOLVANE_VECTORS
void subtract(Byte* __restrict out,
              const Byte* __restrict row,
              const Byte* __restrict above,
              std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i) {
    out[i] = static_cast<Byte>(row[i] - above[i]);
  }
}

TOLVANE_VECTORS
void add(Byte* __restrict out,
         const Byte* __restrict row,
         const Byte* __restrict above,
         std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i) {
    out[i] = static_cast<Byte>(row[i] + above[i]);
  }
}

}  // namespace tolvane::PixelLoops
