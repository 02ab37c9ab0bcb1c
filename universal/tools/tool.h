#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "engine/primitives/file_info.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Applies a tool to one file: "metadata" to any, "compress" to a PDF, the media tools to audio and
/// video, the image tools to images.
/// @return the results, in the workspace, in the order in which they are shown.
/// @throws ConversionFailure, PlatformError
[[nodiscard]] std::vector<std::filesystem::path> tool(const FileInfo& info,
                                                      std::string_view id,
                                                      const Value::Map& options,
                                                      const JobContext& context);

}  // namespace tolvane::UniversalEngine
