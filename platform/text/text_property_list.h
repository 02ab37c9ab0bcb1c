#pragma once

#include <string_view>

#include "platform/text/property_list.h"

namespace tolvane {

/// Reads the old-style text encoding from UTF-8 text: { key = value; } (list, of, values)
/// <68 65 78> "text" text, with // and /* */ comments. A file that is one dictionary may
/// leave out its braces.
/// @throws DamagedPropertyList
[[nodiscard]] PropertyList readTextPropertyList(std::string_view text);

}  // namespace tolvane
