#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// The name under which pandoc reads files of this lower-case extension; Markdown for those that
/// it does not know.
[[nodiscard]] std::string reader(std::string_view extension);

/// The name under which pandoc writes files of this extension.
[[nodiscard]] std::string writer(std::string_view target);

/// Has pandoc convert a file, for at most 120 seconds. Nothing that the document refers to is read
/// from this machine: only what the document itself holds gets into the result.
/// @param reader, writer as above.
/// @throws as LocalToolchain::run; PlatformError
void pandoc(const JobContext& context,
            std::string_view reader,
            std::string_view writer,
            const std::filesystem::path& input,
            const std::filesystem::path& output);

}  // namespace tolvane::UniversalEngine
