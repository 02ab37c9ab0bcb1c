#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/files/bytes.h"

/// Bytes as text, RFC 4648 section 4: the standard alphabet, padded to groups of four.
namespace tolvane::Base64 {

[[nodiscard]] std::string encode(BytesView bytes);
/// @return nullopt for text that encode() would not have written.
[[nodiscard]] std::optional<Bytes> decode(std::string_view text);

}  // namespace tolvane::Base64
