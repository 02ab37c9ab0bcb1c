#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/desktop/accessibility_tree.h"
#include "platform/desktop/file_manager_selection.h"
#include "platform/desktop/geometry.h"

namespace tolvane {

/// What only the window system knows of a window.
struct WindowPlace {
  /// Top-left corner of what the window shows of itself, y downwards: the window's corner plus the
  /// left and top of "_GTK_FRAME_EXTENTS".
  Point origin;
  std::string objectPath;  ///< "_GTK_WINDOW_OBJECT_PATH"; empty when the window has none
};

/// @param window RunningApplication::window. @return nullopt when the window is gone.
using WindowPlaces = std::function<std::optional<WindowPlace>(std::uint64_t window)>;

/// Files and elements of other applications, over AT-SPI. The tree knows the element of the file
/// that the selection found last.
struct Accessibility {
  std::unique_ptr<FileManagerSelection> selection;
  std::unique_ptr<AccessibilityTree> tree;
};

/// Connects to the buses when first asked. Everything on the main thread.
[[nodiscard]] Accessibility atspiAccessibility(WindowPlaces places);

}  // namespace tolvane
