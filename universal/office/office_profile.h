#pragma once

#include <filesystem>

namespace tolvane::UniversalEngine {

/// Makes the folder in which the office suite keeps its settings, unless it is there: the suite
/// then loads nothing that a document only points at, neither files of this machine nor addresses.
/// @param profile its parent exists.
/// @param suite the suite's program, or a link to it. @throws PlatformError
void makeOfficeProfile(const std::filesystem::path& profile, const std::filesystem::path& suite);

}  // namespace tolvane::UniversalEngine
