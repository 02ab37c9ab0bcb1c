#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop/accessibility/accessible.h"

namespace tolvane {

/// One selected cell of a view that lists files.
struct SelectedCell {
  AccessibleReference reference;
  std::size_t position = 0;        ///< among the cells of the view, row by row
  std::vector<std::string> texts;  ///< its own and those within it; one may be the file's name
  bool isNested = false;           ///< in an expanded row: in another folder than the view's
};

/// What is selected in a view, as far as it was read.
struct ViewSelection {
  std::size_t columns = 1;
  bool isCertain = true;  ///< everything was read, and no row is expanded
  std::vector<SelectedCell> cells;
};

/// The part of a window that matters, read at one moment.
struct WindowNode {
  AccessibleReference reference;
  AccessibleRole role = AccessibleRole::unknown;
  AccessibleStates states;
  std::string name;
  std::string text;                        ///< of an entry on the screen
  std::vector<WindowNode> children;        ///< those that were read
  std::optional<ViewSelection> selection;  ///< of a view that lists the folder
};

}  // namespace tolvane
