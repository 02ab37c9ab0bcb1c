#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "engine/primitives/file_info.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Where this process finds a file of the workspace, whatever has its path meanwhile.
/// @throws ConversionFailure when the workspace was replaced.
using Lasting = std::function<std::filesystem::path(const std::filesystem::path&)>;

/// Checks each result and gives it its name in the user's folder, one after another. A result
/// called "result.<extension>" takes the name of the first input.
/// @param results files in the job's workspace, which stands in `destination`.
/// @return the placed files. After a failure or a cancellation none is left.
/// @throws ConversionFailure, PlatformError
[[nodiscard]] std::vector<std::filesystem::path> placeResults(
    const std::vector<std::filesystem::path>& results,
    const std::filesystem::path& destination,
    const Lasting& lasting,
    const std::vector<FileInfo>& inputs,
    const JobContext& context);

}  // namespace tolvane::UniversalEngine
