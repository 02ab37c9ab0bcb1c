#pragma once

#include <filesystem>
#include <vector>

#include "platform/desktop/accessibility/window_tree.h"

/// Which folder a file manager's window shows, by what stands in the window. Looks at the disk.
namespace tolvane::FolderRecognizer {

/// Where the buttons of a row may lead from.
enum class RowStart {
  root,         ///< only "/": whose row spells the whole path needs no other
  rootOrPlace,  ///< also the user's home, by its own name or "Home"; any place may be called so
};

/// Folders that exist: the one in the location entry, when the window's title names it; without one
/// those that rows of buttons lead to, one for each part of the path, in either direction, as far
/// as the button that is pressed or named in the title. More than one when the rows can be read in
/// several ways.
/// @param home which "~" stands for, too.
[[nodiscard]] std::vector<std::filesystem::path> candidates(const WindowNode& window,
                                                            const std::filesystem::path& home,
                                                            RowStart start);

/// @return whether the title is that of a window that shows the folder: its name or its path alone,
/// or before other words.
[[nodiscard]] bool isTitleOf(const std::string& title, const std::filesystem::path& folder);

}  // namespace tolvane::FolderRecognizer
