#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "engine/primitives/file_info.h"
#include "engine/primitives/value.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Converts one file. Each kind of file has its road, some of them through native actions.
/// @param target extension such as "docx"; "gz" stands for a gzip-compressed TAR file.
/// @return the produced files, inside the workspace. @throws ConversionFailure, PlatformError
[[nodiscard]] std::vector<std::filesystem::path> convert(const FileInfo& info,
                                                         std::string_view target,
                                                         const Value::Map& options,
                                                         const JobContext& context);

}  // namespace tolvane::UniversalEngine
