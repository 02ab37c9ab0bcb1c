#pragma once

#include <string_view>

#include "engine/primitives/file_info.h"
#include "engine/primitives/value.h"

namespace tolvane::CapabilityCatalog {

/// The option fields of a tool, in the order in which they are shown.
[[nodiscard]] Value::List toolFields(FileKind kind, std::string_view tool);

}  // namespace tolvane::CapabilityCatalog
