#pragma once

#include "platform/desktop/geometry.h"
#include "platform/desktop/path.h"

namespace tolvane {

/// What the palette shows: the interface over a backdrop. It fills the one window that holds it;
/// at first that is the panel. Main thread only.
class ContentView {
 public:
  enum class Window { palettePanel, settingsWindow };
  /// What becomes of the pointer where the panel has no backdrop, as far as the screen can blend
  /// windows; where it cannot, the panel is cut there, and the pointer always goes through.
  enum class FreeParts { takePointer, letPointerThrough };

  ContentView() = default;
  virtual ~ContentView() = default;
  ContentView(const ContentView&) = delete;
  ContentView& operator=(const ContentView&) = delete;

  /// Takes the view out of the window that holds it and puts it into the other one.
  virtual void moveTo(Window window) = 0;
  /// Of the window that holds it, as it was last set: not as the screen may still show it.
  [[nodiscard]] virtual Size size() const = 0;
  /// Cuts the panel's backdrop, and its shadow, to a shape. The settings window has a ground of its
  /// own, which is not cut.
  /// @param shape in the view's own coordinates: origin bottom-left, y up.
  virtual void setBackdropShape(const Path& shape, FreeParts freeParts) = 0;
};

}  // namespace tolvane
