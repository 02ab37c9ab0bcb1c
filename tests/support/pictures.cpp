#include "tests/support/pictures.h"

#include <array>
#include <fstream>

#include "platform/images/image_encoder.h"

namespace tolvane::support {

namespace {

void write(const std::filesystem::path& file, BytesView bytes) {
  std::ofstream stream(file, std::ios::binary);
  stream << asText(bytes);
}

std::uint32_t crc32(BytesView bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const std::uint8_t byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) {
      crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
  }
  return ~crc;
}

void appendBigEndian(Bytes& bytes, std::uint32_t number) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<std::uint8_t>(number >> shift));
  }
}

void appendChunk(Bytes& png, const char* type, const Bytes& content) {
  appendBigEndian(png, static_cast<std::uint32_t>(content.size()));
  const std::size_t checked = png.size();
  png.insert(png.end(), type, type + 4);
  png.insert(png.end(), content.begin(), content.end());
  appendBigEndian(png, crc32(BytesView(png).subspan(checked)));
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

void writePng(const std::filesystem::path& file, const Bitmap& bitmap) {
  write(file, ImageEncoder::png(bitmap));
}

void writeJpeg(const std::filesystem::path& file, const Bitmap& bitmap) {
  write(file, ImageEncoder::jpeg(bitmap, 0.9));
}

void writePngHeader(const std::filesystem::path& file, std::uint32_t width, std::uint32_t height) {
  Bytes png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  Bytes header;
  appendBigEndian(header, width);
  appendBigEndian(header, height);
  header.insert(header.end(), {8, 0, 0, 0, 0});  // 8-bit grey
  appendChunk(png, "IHDR", header);
  // The zlib stream of nothing: enough for readers that look for a data chunk.
  appendChunk(png, "IDAT", {0x78, 0x9C, 0x03, 0x00, 0x00, 0x00, 0x00, 0x01});
  appendChunk(png, "IEND", {});
  write(file, png);
}

}  // namespace tolvane::support
