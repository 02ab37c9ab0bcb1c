#pragma once

#include <filesystem>
#include <vector>

#include "engine/primitives/file_info.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Plays two or more videos one after another, in the frame of the first.
/// @return "result-joined.mp4" in the workspace. @throws ConversionFailure, PlatformError
[[nodiscard]] std::filesystem::path joinedVideo(const std::vector<FileInfo>& videos,
                                                const JobContext& context);

}  // namespace tolvane::UniversalEngine
