#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "catalog/engine_lookup.h"
#include "engine/primitives/file_info.h"

namespace tolvane::CapabilityCatalog {

/// What a tool still needs; the counterpart of requirement() for conversions.
/// @param tool its name, such as "crop".
/// @return a sentence for the user; nullopt when the tool can run.
[[nodiscard]] std::optional<std::string> toolRequirement(FileKind kind,
                                                         std::string_view tool,
                                                         EngineLookup& engines);

}  // namespace tolvane::CapabilityCatalog
