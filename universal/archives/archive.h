#pragma once

#include <filesystem>
#include <string_view>

#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Makes a ZIP, a TAR or a compressed TAR with the contents of any archive. What the archive
/// declares is judged before anything is written, what extraction writes while and after it is
/// written. A gzip file that holds nothing but a TAR counts as that TAR.
/// @param target "zip", "tar" or "gz".
/// @param output in the workspace. Beside it "payload" and "tar-contents" are left.
/// @throws ConversionFailure, among others when the archive is unsafe; PlatformError.
void archive(const std::filesystem::path& input,
             std::string_view target,
             const std::filesystem::path& output,
             const JobContext& context);

}  // namespace tolvane::UniversalEngine
