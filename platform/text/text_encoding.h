#pragma once

#include <optional>
#include <string>

#include "platform/files/bytes.h"

/// Text from bytes in a given encoding, into UTF-8. Strict: a malformed sequence makes the whole
/// absent.
namespace tolvane::TextEncoding {

/// @return whether the bytes are well-formed UTF-8 (overlong forms and surrogates are not).
[[nodiscard]] bool isUtf8(BytesView bytes);
[[nodiscard]] std::optional<std::string> fromUtf8(BytesView bytes);
/// With a byte-order mark in the order that it tells (the mark is dropped), without one
/// little-endian.
[[nodiscard]] std::optional<std::string> fromUtf16(BytesView bytes);
/// Never absent: each of the 256 bytes is a character.
[[nodiscard]] std::string fromMacRoman(BytesView bytes);

}  // namespace tolvane::TextEncoding
