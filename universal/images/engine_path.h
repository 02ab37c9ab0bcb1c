#pragma once

#include <filesystem>
#include <string>

#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// How `magick` is told of a file. ImageMagick reads scene numbers ("%d"), frames ("[0]"),
/// wildcards and formats ("png:") from names, and would open or write another file.
/// @param file absolute; to be written only when it lies in the workspace, under a name of ours.
/// @return its path, or where that has such characters, a name that holds in the workspace; a file
/// from elsewhere gets a link there. @throws PlatformError
[[nodiscard]] std::string enginePath(const std::filesystem::path& file, const JobContext& context);

}  // namespace tolvane::UniversalEngine
