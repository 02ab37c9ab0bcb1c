#pragma once

#include <filesystem>
#include <string_view>

#include "engine/primitives/file_info.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Applies a tool to one picture.
/// @param id "compress", "background", "crop", "redact", "edit" or "annotate".
/// @return "result-crop.png" in the workspace; JPEG only for a compressed JPEG.
/// @throws ConversionFailure for another id, for options out of bounds and from the engine;
/// PlatformError
[[nodiscard]] std::filesystem::path imageTool(const FileInfo& info,
                                              std::string_view id,
                                              const Value::Map& options,
                                              const JobContext& context);

}  // namespace tolvane::UniversalEngine
