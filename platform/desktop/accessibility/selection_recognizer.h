#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "platform/desktop/accessibility/file_manager_facts.h"
#include "platform/desktop/accessibility/window_tree.h"

namespace tolvane {

struct RecognizedSelection {
  std::vector<std::filesystem::path> files;    ///< in the file manager's order
  std::optional<AccessibleReference> element;  ///< that shows the name of a single file
};

/// Which files are selected in a window. Looks at the disk.
namespace SelectionRecognizer {

/// Nothing is recognised unless all of it is certain: there is one view, everything of it was
/// read, each row shows the name of exactly one file of exactly one of the folders, no file twice,
/// and what the file manager writes of the selection agrees.
/// @param folders that the window may show.
[[nodiscard]] RecognizedSelection selection(const WindowNode& window,
                                            const FileManagerFacts& facts,
                                            const std::vector<std::filesystem::path>& folders);

}  // namespace SelectionRecognizer

}  // namespace tolvane
