#include "platform/text/base64.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace tolvane::Base64 {

namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view blanks = " \t\r\n";

constexpr std::uint8_t noDigit = 0xFF;
constexpr std::uint8_t blank = 0xFE;

constexpr std::array<std::uint8_t, 256> digitValues() {
  std::array<std::uint8_t, 256> values = {};
  values.fill(noDigit);
  for (std::size_t value = 0; value < alphabet.size(); ++value) {
    values[static_cast<unsigned char>(alphabet[value])] = static_cast<std::uint8_t>(value);
  }
  for (const char letter : blanks) {
    values[static_cast<unsigned char>(letter)] = blank;
  }
  return values;
}

/// Whether nothing but padding and blanks is left.
bool isPadding(std::string_view text) {
  return text.find_first_not_of("= \t\r\n") == std::string_view::npos;
}

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
  static constexpr std::array<std::uint8_t, 256> values = digitValues();
  Bytes bytes;
  bytes.reserve(text.size() / 4 * 3);
  unsigned bits = 0;
  unsigned bitCount = 0;
  std::size_t digitCount = 0;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const std::uint8_t value = values[static_cast<unsigned char>(text[index])];
    if (value == blank) {
      continue;
    }
    if (value == noDigit) {
      if (!isPadding(text.substr(index))) {
        return std::nullopt;
      }
      break;
    }
    ++digitCount;
    bits = (bits << 6 | value) & 0xFFFFU;
    bitCount += 6;
    if (bitCount >= 8) {
      bitCount -= 8;
      bytes.push_back(static_cast<std::uint8_t>(bits >> bitCount));
    }
  }
  // A single digit in the last group of four is less than a byte.
  return digitCount % 4 == 1 ? std::nullopt : std::optional(std::move(bytes));
}

}  // namespace tolvane::Base64
