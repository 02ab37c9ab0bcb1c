#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/images/bitmap.h"

/// Small pictures for tests.
namespace tolvane::support {

/// A picture whose every pixel differs from its neighbours. Alpha, where there is any, grows to the
/// right.
[[nodiscard]] Bitmap gradient(int width, int height, PixelLayout layout);

/// Quarters in red, green, blue and black: upper left, upper right, lower left, lower right.
[[nodiscard]] Bitmap quarters(int width, int height);

void writePng(const std::filesystem::path& file, const Bitmap& bitmap);
void writeJpeg(const std::filesystem::path& file, const Bitmap& bitmap);

/// A PNG that declares a size and holds no pixels.
[[nodiscard]] std::string pngHeader(std::uint32_t width, std::uint32_t height);

}  // namespace tolvane::support
