#pragma once

#include <string_view>

#include "universal/job/job_context.h"

namespace tolvane::UniversalEngine {

/// Some builds of pandoc cannot reach their own parts from inside of their sandbox. That shows only
/// after the document was read, which may take a minute: so an empty one is tried, once for each
/// writer while the program runs and pandoc stays the same. Any thread.
/// @param writer as pandoc() takes it. @throws as LocalToolchain::run; PlatformError
[[nodiscard]] bool canWriteInSandbox(const JobContext& context, std::string_view writer);

}  // namespace tolvane::UniversalEngine
