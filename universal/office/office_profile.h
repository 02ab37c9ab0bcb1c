#pragma once

#include <filesystem>

namespace tolvane::UniversalEngine {

/// Makes the folder in which the office suite keeps its settings, unless it is there: the suite
/// then loads nothing that a document only points at, neither files of this machine nor addresses.
/// @param profile its parent exists. @throws PlatformError
void makeOfficeProfile(const std::filesystem::path& profile);

}  // namespace tolvane::UniversalEngine
