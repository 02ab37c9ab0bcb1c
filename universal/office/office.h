#pragma once

#include <filesystem>
#include <string_view>

#include "engine/primitives/file_info.h"
#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Converts a document, spreadsheet or presentation with LibreOffice.
/// @param target the extension of the result.
/// @throws ConversionFailure also when the suite ends well and leaves no result; PlatformError
void office(const std::filesystem::path& input,
            std::string_view target,
            const std::filesystem::path& output,
            const JobContext& context);

/// Converts a Pages, Keynote or Numbers file with the application that it belongs to, on systems
/// that have it.
/// @throws ConversionFailure, PlatformError
void appleOffice(const FileInfo& info,
                 std::string_view target,
                 const std::filesystem::path& output,
                 const JobContext& context);

}  // namespace tolvane::UniversalEngine
