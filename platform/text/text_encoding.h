#pragma once

#include <optional>
#include <string>
#include <string_view>

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
[[nodiscard]] std::optional<std::string> fromMacRoman(BytesView bytes);
/// @param codePage a Windows code page number such as 1252, 932, 10000 (Mac Roman) or 65001
/// (UTF-8);
///   unknown numbers read as 1252. Not strict: a malformed sequence gives U+FFFD.
[[nodiscard]] std::string fromCodePage(int codePage, std::string_view bytes);

}  // namespace tolvane::TextEncoding
