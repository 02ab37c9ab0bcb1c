#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "engine/primitives/file_info.h"
#include "engine/primitives/value.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Converts a PDF: into pictures of its pages, slides that show them, the table that it holds, or
/// its text as a document.
/// @param output where the result goes when it is a single file.
/// @param options "ocr": whether pages without a text layer are recognised; true when absent.
[[nodiscard]] std::vector<std::filesystem::path> convertPdf(const FileInfo& info,
                                                            const std::string& target,
                                                            const std::filesystem::path& output,
                                                            const Value::Map& options,
                                                            const JobContext& context);

}  // namespace tolvane::UniversalEngine
