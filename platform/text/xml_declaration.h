#pragma once

#include <optional>

#include "platform/files/bytes.h"

namespace tolvane {

/// The code page for CodePage that an XML declaration at the start of the bytes names.
/// @return nullopt without a declaration, and for every other encoding than Latin 1, Windows Latin
/// and Mac Roman: UTF-8 and UTF-16 are told apart by content.
[[nodiscard]] std::optional<int> declaredCodePage(BytesView xml);

}  // namespace tolvane
