#include "platform/text/text_encoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "platform/text/code_page.h"
#include "platform/text/utf16_joiner.h"

namespace tolvane::TextEncoding {

namespace {

enum class ByteOrder { little, big };

/// What the byte after a lead byte may be; narrower than 80..BF where the full range would allow
/// overlong forms, surrogates or numbers past U+10FFFF (The Unicode Standard, table 3-7).
struct SecondByte {
  std::uint8_t first;
  std::uint8_t last;
};

SecondByte secondByteAfter(std::uint8_t lead) {
  switch (lead) {
    case 0xE0:
      return {0xA0, 0xBF};
    case 0xED:
      return {0x80, 0x9F};
    case 0xF0:
      return {0x90, 0xBF};
    case 0xF4:
      return {0x80, 0x8F};
    default:
      return {0x80, 0xBF};
  }
}

/// 0 for a byte that starts no character.
std::size_t lengthAfter(std::uint8_t lead) {
  if (lead < 0x80) {
    return 1;
  }
  if (lead < 0xC2 || lead > 0xF4) {
    return 0;
  }
  return lead < 0xE0 ? 2U : lead < 0xF0 ? 3U : 4U;
}

/// Length of the well-formed character that `bytes` (not empty) starts with; 0 when there is none.
std::size_t characterLength(BytesView bytes) {
  const std::size_t length = lengthAfter(bytes[0]);
  if (length > bytes.size() || length < 2) {
    return length == 1 ? 1 : 0;
  }
  const SecondByte second = secondByteAfter(bytes[0]);
  if (bytes[1] < second.first || bytes[1] > second.last) {
    return 0;
  }
  for (std::size_t index = 2; index < length; ++index) {
    if ((bytes[index] & 0xC0) != 0x80) {
      return 0;
    }
  }
  return length;
}

constexpr std::size_t blockSize = 32;

/// Most text is plain ASCII and is passed over by blocks.
bool isAsciiBlock(const std::uint8_t* block) {
  std::uint64_t words[blockSize / sizeof(std::uint64_t)];
  std::memcpy(words, block, blockSize);
  return ((words[0] | words[1] | words[2] | words[3]) & 0x8080'8080'8080'8080U) == 0;
}

std::optional<ByteOrder> byteOrderMark(BytesView bytes) {
  if (startsWith(bytes, "\xFF\xFE")) {
    return ByteOrder::little;
  }
  if (startsWith(bytes, "\xFE\xFF")) {
    return ByteOrder::big;
  }
  return std::nullopt;
}

}  // namespace

bool isUtf8(BytesView bytes) {
  std::size_t position = 0;
  while (position < bytes.size()) {
    if (bytes.size() - position >= blockSize && isAsciiBlock(bytes.data() + position)) {
      position += blockSize;
      continue;
    }
    // To the end of the block by characters, so that a block is not looked at once for each byte.
    const std::size_t end = std::min(bytes.size(), position + blockSize);
    while (position < end) {
      const std::size_t length = characterLength(bytes.subspan(position));
      if (length == 0) {
        return false;
      }
      position += length;
    }
  }
  return true;
}

std::optional<std::string> fromUtf8(BytesView bytes) {
  return isUtf8(bytes) ? std::optional(std::string(bytes.begin(), bytes.end())) : std::nullopt;
}

std::optional<std::string> fromUtf16(BytesView bytes) {
  const std::optional<ByteOrder> mark = byteOrderMark(bytes);
  if (bytes.size() % 2 != 0) {
    return std::nullopt;
  }
  const std::size_t lowByte = mark == ByteOrder::big ? 1 : 0;
  std::string text;
  text.reserve(bytes.size() / 2);
  Utf16Joiner joiner(text);
  for (std::size_t index = mark ? 2 : 0; index < bytes.size(); index += 2) {
    joiner.append(static_cast<char16_t>(bytes[index + lowByte] | bytes[index + 1 - lowByte] << 8));
  }
  joiner.finish();
  return joiner.hasMetLoneSurrogate() ? std::nullopt : std::optional(std::move(text));
}

std::string fromMacRoman(BytesView bytes) {
  std::string text;
  CodePage(CodePage::macRoman).append(bytes, text);
  return text;
}

}  // namespace tolvane::TextEncoding
