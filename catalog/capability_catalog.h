#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalog/engine_lookup.h"
#include "catalog/file_capability.h"
#include "engine/primitives/file_info.h"
#include "engine/primitives/value.h"
#include "universal/toolchain/local_toolchain.h"

/// What can be done with a selection. Stateless: any thread may ask, and the same files get the
/// same offers until an engine is installed or removed. Only names are read, never files' content.
namespace tolvane::CapabilityCatalog {

/// The conversions that every file of the selection allows, in the order of the first file's kind.
[[nodiscard]] std::vector<FileCapability> formats(const std::vector<FileInfo>& files,
                                                  const LocalToolchain& toolchain);

/// The tools for the selection; none when it mixes kinds.
[[nodiscard]] std::vector<FileCapability> tools(const std::vector<FileInfo>& files,
                                                const LocalToolchain& toolchain);

/// What converting one file still needs.
/// @param source the file's extension in lower case. @param target such as "pdf".
/// @return a sentence for the user; nullopt when the conversion can run.
[[nodiscard]] std::optional<std::string> requirement(FileKind kind,
                                                     std::string_view source,
                                                     std::string_view target,
                                                     EngineLookup& engines);

/// An option of an offer, for the interface to render.
/// @param key under which a job's options hold the chosen value.
/// @param fallback the value before the user changes it; "default" on the channel.
/// @param type of the control: "number", "bool" or "text".
[[nodiscard]] Value field(std::string_view key,
                          std::string_view label,
                          Value fallback,
                          std::string_view type);

}  // namespace tolvane::CapabilityCatalog
