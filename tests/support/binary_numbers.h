#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers as file formats hold them.
namespace tolvane::support {

[[nodiscard]] inline std::string littleEndian(std::uint64_t value, int bytes) {
  std::string text;
  for (int byte = 0; byte < bytes; ++byte) {
    text += static_cast<char>(value >> (8 * byte));
  }
  return text;
}

[[nodiscard]] inline std::string bigEndian(std::uint64_t value, int bytes) {
  const std::string text = littleEndian(value, bytes);
  return {text.rbegin(), text.rend()};
}

/// The check sum of PNG, ZIP and gzip.
[[nodiscard]] inline std::uint32_t crc32(std::string_view content) {
  std::uint32_t sum = 0xFFFFFFFF;
  for (const char byte : content) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
    }
  }
  return ~sum;
}

}  // namespace tolvane::support
