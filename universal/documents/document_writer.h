#pragma once

#include <filesystem>
#include <string_view>

#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// What a text is to be taken for.
enum class Markup { plain, markdown };

/// Writes a text as a document.
/// @param to does not exist yet.
/// @param format the extension of the document: "txt", "md", "rtf", "html", "docx", ...
/// @throws ConversionFailure, PlatformError
void document(std::string_view text,
              const std::filesystem::path& to,
              std::string_view format,
              Markup markup,
              const JobContext& context);

}  // namespace tolvane::UniversalEngine
