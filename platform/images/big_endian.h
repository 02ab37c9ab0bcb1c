#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/files/bytes.h"

/// Numbers as PNG, JPEG and ICC store them. The caller has checked that the bytes are there.
namespace tolvane::BigEndian {

[[nodiscard]] inline std::uint32_t read16(BytesView bytes, std::size_t at) {
  return static_cast<std::uint32_t>(bytes[at] << 8U | bytes[at + 1]);
}

[[nodiscard]] inline std::uint32_t read32(BytesView bytes, std::size_t at) {
  return read16(bytes, at) << 16U | read16(bytes, at + 2);
}

inline void append32(Bytes& bytes, std::uint32_t value) {
  for (const unsigned shift : {24U, 16U, 8U, 0U}) {
    bytes.push_back(static_cast<std::uint8_t>(value >> shift));
  }
}

}  // namespace tolvane::BigEndian
