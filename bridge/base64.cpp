#include "bridge/base64.h"

#include <algorithm>

namespace tolvane::Base64 {

namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string encode(BytesView bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t start = 0; start < bytes.size(); start += 3) {
    const std::size_t held = std::min<std::size_t>(3, bytes.size() - start);
    std::uint32_t group = 0;
    for (std::size_t index = 0; index < 3; ++index) {
      group = group << 8 | (index < held ? bytes[start + index] : 0U);
    }
    for (std::size_t index = 0; index < 4; ++index) {
      text += index <= held ? alphabet[group >> (18 - 6 * index) & 0x3F] : '=';
    }
  }
  return text;
}

std::optional<Bytes> decode(std::string_view text) {
  Bytes bytes;
  bytes.reserve(text.size() / 4 * 3);
  const std::size_t length = std::min(text.find('='), text.size());
  std::uint32_t group = 0;
  unsigned bits = 0;
  for (const char letter : text.substr(0, length)) {
    const std::size_t sextet = alphabet.find(letter);
    if (sextet == std::string_view::npos) {
      return std::nullopt;
    }
    group = group << 6 | static_cast<std::uint32_t>(sextet);
    bits += 6;
    if (bits >= 8) {
      bits -= 8;
      bytes.push_back(static_cast<std::uint8_t>(group >> bits));
    }
  }
  // Settles length, padding and unused bits at once.
  return encode(bytes) == text ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace tolvane::Base64
