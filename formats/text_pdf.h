#pragma once

#include <filesystem>
#include <string_view>

#include "engine/primitives/cancellation_token.h"

namespace tolvane::UniversalFormats {

/// Sets a plain text, black on white, on A4 pages of a new PDF: at most 500, at least one. Long
/// lines wrap, a form feed begins a new page.
/// @param text UTF-8.
/// @param to replaced when it exists. What stands there after a failure is to be thrown away.
/// @throws ConversionFailure when the file cannot be created, the text is too long or the job is
/// cancelled; PlatformError when writing fails later.
void textPDF(std::string_view text,
             const std::filesystem::path& to,
             const CancellationToken& token);

}  // namespace tolvane::UniversalFormats
