#pragma once

#include <string>

#include "engine/primitives/file_info.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// The text of a document file in UTF-8; which kind of document it is follows from its extension.
/// @throws ConversionFailure, PlatformError
[[nodiscard]] std::string readText(const FileInfo& info, const JobContext& context);

}  // namespace tolvane::UniversalEngine
