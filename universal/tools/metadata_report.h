#pragma once

#include <filesystem>

#include "engine/primitives/file_info.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Writes what is known of a file: name, type and bytes, and by its kind the pages and attributes
/// of a PDF, the properties of an image, the streams of audio and video where ffprobe is installed.
/// @return "result-metadata.json" in the workspace, its keys sorted.
/// @throws PlatformError when the file or the report cannot be accessed; what probe() throws.
[[nodiscard]] std::filesystem::path metadataReport(const FileInfo& info, const JobContext& context);

}  // namespace tolvane::UniversalEngine
