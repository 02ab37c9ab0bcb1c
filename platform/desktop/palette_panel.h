#pragma once

#include <chrono>
#include <functional>

#include "platform/desktop/geometry.h"

namespace tolvane {

enum class MouseEvents { accepted, ignored };

/// The palette's window: borderless, floating above all others on every workspace and over
/// full-screen windows, see-through where nothing is drawn, and with a shadow that follows its
/// backdrop, as far as the screen can blend windows; it does not hide when another application
/// becomes active and cannot be dragged by its background. Main thread only.
class PalettePanel {
 public:
  static constexpr const char* title = "tolvane";

  PalettePanel() = default;
  virtual ~PalettePanel() = default;
  PalettePanel(const PalettePanel&) = delete;
  PalettePanel& operator=(const PalettePanel&) = delete;

  /// @param dismiss called on Escape; an empty one takes the last one back.
  virtual void onDismiss(std::function<void()> dismiss) = 0;

  /// As it was last set, also where the screen follows later. The same holds for isVisible().
  [[nodiscard]] virtual Rectangle frame() const = 0;
  /// At once, and displayed at once when visible.
  virtual void setFrame(const Rectangle& frame) = 0;

  [[nodiscard]] virtual bool isVisible() const = 0;
  /// Shows the panel in front of all others and gives it, and the interface in it, the keyboard.
  virtual void makeKeyAndOrderFront() = 0;
  virtual void orderOut() = 0;

  /// While ignored, events of the mouse go to what lies below the panel.
  virtual void setMouseEvents(MouseEvents events) = 0;

  /// @param opacity 0 to 1. Where the screen cannot blend windows, the panel may stay opaque.
  virtual void setOpacity(double opacity) = 0;
  /// Brings the opacity from what it is to 1.
  virtual void fadeIn(std::chrono::milliseconds duration) = 0;
};

}  // namespace tolvane
