#include "tests/support/pictures.h"

#include <array>
#include <fstream>

#include "platform/images/image_encoder.h"
#include "tests/support/binary_numbers.h"

namespace tolvane::support {

namespace {

void write(const std::filesystem::path& file, BytesView bytes) {
  std::ofstream stream(file, std::ios::binary);
  stream << asText(bytes);
}

std::string chunk(const std::string& type, const std::string& content) {
  return bigEndian(content.size(), 4) + type + content + bigEndian(crc32(type + content), 4);
}

}  // namespace

Bitmap gradient(int width, int height, PixelLayout layout) {
  Bitmap bitmap = {width, height, layout, {}};
  const int components = bytesPerPixel(layout);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const std::array<int, 4> colors = {x * 7 + y, x + y * 5, x * 3 + y * 2, x * 255 / width};
      for (int component = 0; component < components; ++component) {
        bitmap.pixels.push_back(
            static_cast<std::uint8_t>(colors[static_cast<std::size_t>(component)]));
      }
    }
  }
  return bitmap;
}

Bitmap quarters(int width, int height) {
  Bitmap picture{width, height, PixelLayout::rgb, {}};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const bool right = x >= width / 2;
      const bool lower = y >= height / 2;
      for (const bool full : {!right && !lower, right && !lower, !right && lower}) {
        picture.pixels.push_back(full ? 255 : 0);
      }
    }
  }
  return picture;
}

void writePng(const std::filesystem::path& file, const Bitmap& bitmap) {
  write(file, ImageEncoder::png(bitmap));
}

void writeJpeg(const std::filesystem::path& file, const Bitmap& bitmap) {
  write(file, ImageEncoder::jpeg(bitmap, 0.9));
}

std::string pngHeader(std::uint32_t width, std::uint32_t height) {
  // 8-bit grey, and the zlib stream of nothing: enough for readers that look for a data chunk.
  return "\x89PNG\r\n\x1A\n" +
         chunk("IHDR",
               bigEndian(width, 4) + bigEndian(height, 4) + std::string("\x08\0\0\0\0", 5)) +
         chunk("IDAT", std::string("\x78\x9C\x03\0\0\0\0\x01", 8)) + chunk("IEND", "");
}

}  // namespace tolvane::support
