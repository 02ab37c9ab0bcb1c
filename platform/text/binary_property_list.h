#pragma once

#include "platform/text/property_list.h"

namespace tolvane {

/// Reads the binary encoding ("bplist00"): objects in any order, found through a table of offsets.
/// @throws DamagedPropertyList
[[nodiscard]] PropertyList readBinaryPropertyList(BytesView bytes);

}  // namespace tolvane
