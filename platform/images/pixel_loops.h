#pragma once

#include <cstddef>
#include <cstdint>

/// The loops over the bytes of one row of pixels, compiled once for every machine and once more for
/// machines with 256-bit vectors. Buffers never overlap.
namespace tolvane::PixelLoops {

/// Whether red, green and blue are the same in every pixel.
[[nodiscard]] bool isGreyRgb(const std::uint8_t* row, std::size_t pixels);
[[nodiscard]] bool isGreyBgrx(const std::uint8_t* row, std::size_t pixels);

/// The second component of every pixel, which is green in rgb and in bgrx.
void greyFromRgb(std::uint8_t* out, const std::uint8_t* row, std::size_t pixels);
void greyFromBgrx(std::uint8_t* out, const std::uint8_t* row, std::size_t pixels);

void bgrxFromGrey(std::uint8_t* out, const std::uint8_t* row, std::size_t pixels);
void rgbFromBgrx(std::uint8_t* out, const std::uint8_t* row, std::size_t pixels);
/// Straight alpha over opaque white, rounded to nearest.
void rgbOverWhite(std::uint8_t* out, const std::uint8_t* rgba, std::size_t pixels);

/// The whole, of which weights are parts, is 2 to this power.
constexpr int weightBits = 12;
/// sums += weight * row
void addWeighted(std::int32_t* sums,
                 const std::uint8_t* row,
                 std::int16_t weight,
                 std::size_t bytes);
/// out = sums / whole, rounded to nearest and kept within a byte.
void bytesFromWeighted(std::uint8_t* out, const std::int32_t* sums, std::size_t bytes);

/// out = row - above, byte by byte, modulo 256.
void subtract(std::uint8_t* out,
              const std::uint8_t* row,
              const std::uint8_t* above,
              std::size_t bytes);

/// out = row + above, byte by byte, modulo 256.
void add(std::uint8_t* out, const std::uint8_t* row, const std::uint8_t* above, std::size_t bytes);

}  // namespace tolvane::PixelLoops
