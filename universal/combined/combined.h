#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "engine/primitives/file_info.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Makes one result of all the files.
/// @param tool "create_pdf" (a page an image), "collage" (up to 25 images) or "join" (two or more
/// videos, one after another).
/// @return the results, in the workspace.
/// @throws ConversionFailure, PlatformError; the first file that fails ends the whole.
[[nodiscard]] std::vector<std::filesystem::path> combined(const std::vector<FileInfo>& inputs,
                                                          std::string_view tool,
                                                          const Value::Map& options,
                                                          const JobContext& context);

}  // namespace tolvane::UniversalEngine
