#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/files/bytes.h"

/// Bytes as text, RFC 4648 section 4.
namespace tolvane::Base64 {

/// The standard alphabet, padded to groups of four, without line ends.
[[nodiscard]] std::string encode(BytesView bytes);

/// Blanks and line ends are passed over; the padding may be missing.
/// @return nullopt when `text` holds anything else that is no Base64.
[[nodiscard]] std::optional<Bytes> decode(std::string_view text);

}  // namespace tolvane::Base64
