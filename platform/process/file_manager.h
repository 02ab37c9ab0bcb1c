#pragma once

#include <filesystem>
#include <vector>

/// The session's file manager, as far as it can be asked over D-Bus.
namespace tolvane::FileManager {

/// Asks it to show the files, selected; does not wait until it has. May take some milliseconds on
/// the first call, and less than a second when the session bus is stuck.
/// @return false when there is no session bus, or nobody on it who could show them.
[[nodiscard]] bool reveal(const std::vector<std::filesystem::path>& files) noexcept;

}  // namespace tolvane::FileManager
