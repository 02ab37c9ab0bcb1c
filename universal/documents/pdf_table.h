#pragma once

#include <filesystem>

#include "formats/table.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// The table that the characters of a PDF form, over all its pages; empty when there is none.
/// @throws ConversionFailure when the PDF does not open or the job is cancelled; PlatformError.
[[nodiscard]] Table pdfTable(const std::filesystem::path& url, const JobContext& context);

}  // namespace tolvane::UniversalEngine
