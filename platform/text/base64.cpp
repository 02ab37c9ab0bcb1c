#include "platform/text/base64.h"

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

std::optional<Bytes> decoded(std::string_view text) {
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
