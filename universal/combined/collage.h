#pragma once

#include <filesystem>
#include <vector>

#include "engine/primitives/file_info.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Lays up to 25 pictures out as nearly square as they go.
/// @return "result-collage.png" in the workspace. @throws ConversionFailure, PlatformError
[[nodiscard]] std::filesystem::path collage(const std::vector<FileInfo>& images,
                                            const JobContext& context);

}  // namespace tolvane::UniversalEngine
