#pragma once

#include <filesystem>

#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Opens a result once more with a reader of its format, which its extension tells; other files
/// pass unread.
/// @throws ConversionFailure, PlatformError when it is not readable.
void verify(const std::filesystem::path& url, const JobContext& context);

}  // namespace tolvane::UniversalEngine
