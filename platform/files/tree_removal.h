#pragma once

#include <filesystem>

namespace tolvane {

/// Removes a folder with all that is in it, however deep, also what is closed to its owner; what
/// cannot be removed stays. Links are removed, not followed. Most of the time goes into the
/// kernel's work on each file, and the kernel does it for different folders at once: two threads
/// need little more than half of the time of one.
void removeTreeQuietly(const std::filesystem::path& root) noexcept;

}  // namespace tolvane
