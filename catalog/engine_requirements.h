#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "catalog/engine_lookup.h"
#include "engine/primitives/file_info.h"

namespace tolvane::CapabilityCatalog {

/// What a tool still needs for one file; the counterpart of requirement() for conversions.
/// @param source the file's extension in lower case. @param tool its name, such as "crop".
/// @return a sentence for the user; nullopt when the tool can run.
[[nodiscard]] std::optional<std::string> toolRequirement(FileKind kind,
                                                         std::string_view source,
                                                         std::string_view tool,
                                                         EngineLookup& engines);

}  // namespace tolvane::CapabilityCatalog
