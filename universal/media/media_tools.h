#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "engine/primitives/file_info.h"
#include "engine/primitives/value.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Applies a tool to an audio or video file. Names of results follow the tool: result-trim.mp4,
/// result-snapshot.png, result-normalize.m4a.
/// @param id any tool but "metadata".
/// @return the results, in the workspace. @throws as media() and mediaSegments()
[[nodiscard]] std::vector<std::filesystem::path> mediaTool(const FileInfo& info,
                                                           std::string_view id,
                                                           const Value::Map& options,
                                                           const JobContext& context);

}  // namespace tolvane::UniversalEngine
