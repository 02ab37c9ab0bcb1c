#pragma once

#include <filesystem>
#include <string>

#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Whether the text of pages without a text layer is recognized in their pictures.
enum class Ocr { off, on };

/// The text of a PDF, pages separated by an empty line. Pages without text are passed over; with
/// recognition the picture of each stays in the workspace as "ocr-<page index>.png", and a page on
/// which nothing is recognized ends the whole.
/// @throws ConversionFailure when the PDF does not open, has no text, or the job is cancelled;
/// PlatformError.
[[nodiscard]] std::string pdfText(const std::filesystem::path& url,
                                  Ocr ocr,
                                  const JobContext& context);

}  // namespace tolvane::UniversalEngine
