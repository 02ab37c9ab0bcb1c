#pragma once

#include <filesystem>

/// The folders that the XDG Base Directory rules give to a user.
namespace tolvane::UserFolders {

/// $XDG_CONFIG_HOME, else ~/.config. It need not exist.
/// @throws PlatformError when the environment names neither by an absolute path.
[[nodiscard]] std::filesystem::path configuration();

}  // namespace tolvane::UserFolders
