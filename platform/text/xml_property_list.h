#pragma once

#include <string_view>

#include "platform/text/property_list.h"

namespace tolvane {

/// Reads the XML encoding from UTF-8 text. The five predefined entities and character numbers are
/// understood; entities that the file defines are not, and the list is refused.
/// @throws DamagedPropertyList
[[nodiscard]] PropertyList readXmlPropertyList(std::string_view text);

}  // namespace tolvane
