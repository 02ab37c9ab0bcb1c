#pragma once

#include <filesystem>

namespace tolvane {

/// Removes all that is in a folder, however deep, also what is closed to its owner; what cannot be
/// removed stays. Every folder is reached from the open one without following a link or entering a
/// mount, and only folders of this process's own user are touched: whatever another user renames or
/// replaces meanwhile, nothing outside goes. Most of the time goes into the kernel's work on each
/// file, and the kernel does it for different folders at once: two threads need little more than
/// half of the time of one. Needs few descriptors, whatever the depth.
/// @param folder open; stays open.
void emptyFolderQuietly(int folder) noexcept;

/// Removes an entry of `parent` if it still is the folder `folder` and that is empty.
/// @return whether it was removed.
bool removeEmptyFolder(int parent, const char* name, int folder) noexcept;

/// Removes a folder with all that is in it, as emptyFolderQuietly does. A link is left as it is.
void removeTreeQuietly(const std::filesystem::path& root) noexcept;

}  // namespace tolvane
