#pragma once

#include <optional>
#include <string_view>

#include "platform/files/bytes.h"

namespace tolvane::Base64 {

/// Blanks and line ends are passed over; the padding may be missing.
/// @return nullopt when `text` holds anything else that is no Base64.
[[nodiscard]] std::optional<Bytes> decoded(std::string_view text);

}  // namespace tolvane::Base64
