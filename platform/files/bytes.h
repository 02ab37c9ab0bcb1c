#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tolvane {

using Bytes = std::vector<std::uint8_t>;
using BytesView = std::span<const std::uint8_t>;

/// The same memory, seen as characters. Not owned.
[[nodiscard]] inline std::string_view asText(BytesView bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The same memory, seen as bytes. Not owned.
[[nodiscard]] inline BytesView asBytes(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

[[nodiscard]] inline bool startsWith(BytesView bytes, std::string_view prefix) {
  return asText(bytes).starts_with(prefix);
}

}  // namespace tolvane
