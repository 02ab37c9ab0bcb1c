#pragma once

#include <functional>

#include "platform/desktop/geometry.h"

namespace tolvane {

/// The window that shows the settings: titled, closable and not resizable, its content reaching
/// below a transparent title bar. Main thread only.
class SettingsWindow {
 public:
  static constexpr const char* title = "tolvane Settings";

  SettingsWindow() = default;
  virtual ~SettingsWindow() = default;
  SettingsWindow(const SettingsWindow&) = delete;
  SettingsWindow& operator=(const SettingsWindow&) = delete;

  /// @param dismiss called on Escape and by the close button, which do nothing else: the window is
  /// not closed by them. An empty one takes the last one back.
  virtual void onDismiss(std::function<void()> dismiss) = 0;

  virtual void setContentSize(Size size) = 0;
  [[nodiscard]] virtual bool isVisible() const = 0;
  /// Shows the window in the middle of the screen, in front, and gives it the keyboard.
  virtual void centreAndMakeKey() = 0;
  virtual void orderOut() = 0;
};

}  // namespace tolvane
