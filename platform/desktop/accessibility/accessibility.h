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
  /// Top-left corner of what the window shows of itself: the window's corner plus the left and top
  /// of "_GTK_FRAME_EXTENTS". In points from the top-left corner of the desktop, y downwards.
  Point origin;
  std::string title;       ///< "_NET_WM_NAME"
  std::string objectPath;  ///< "_GTK_WINDOW_OBJECT_PATH"; empty when the window has none
};

/// @param window RunningApplication::window. @return nullopt when the window is gone.
using WindowPlaces = std::function<std::optional<WindowPlace>(std::uint64_t window)>;

/// @param point in points from the top-left corner of the desktop.
/// @return the same from the top-left corner of the primary screen; y downwards in both.
using FromPrimary = std::function<Point(const Point& point)>;

/// Files and elements of other applications, over AT-SPI. The tree knows the element of the file
/// that the selection found last.
struct Accessibility {
  std::unique_ptr<FileManagerSelection> selection;
  std::unique_ptr<AccessibilityTree> tree;
};

/// Connects to the buses when first asked. Everything on the main thread.
[[nodiscard]] Accessibility atspiAccessibility(WindowPlaces places, FromPrimary fromPrimary);

}  // namespace tolvane
