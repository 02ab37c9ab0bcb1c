#pragma once

#include <filesystem>
#include <vector>

#include "engine/primitives/file_info.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// The pictures that the user sees, as PNG files in the workspace.
[[nodiscard]] std::vector<std::filesystem::path> normalizedAll(const std::vector<FileInfo>& images,
                                                               const JobContext& context);

/// Lays up to 25 pictures out as nearly square as they go.
/// @return "result-collage.png" in the workspace. @throws ConversionFailure, PlatformError
[[nodiscard]] std::filesystem::path collage(const std::vector<FileInfo>& images,
                                            const JobContext& context);

}  // namespace tolvane::UniversalEngine
