#pragma once

#include "platform/desktop/content_view.h"
#include "platform/desktop/qt/qt_palette_panel.h"
#include "platform/desktop/qt/qt_settings_window.h"

namespace tolvane {

/// The interface's item, in one of the two windows.
class QtContentView final : public ContentView {
 public:
  /// Puts the view into the panel.
  /// @param interface fills the view. Nothing is owned; all outlive this object.
  QtContentView(QQuickItem& interface, QtPalettePanel& panel, QtSettingsWindow& settings);

  void moveTo(Window window) override;
  [[nodiscard]] Size size() const override;
  void setBackdropShape(const Path& shape, FreeParts freeParts) override;

 private:
  QtPalettePanel& panel_;
  QtSettingsWindow& settings_;
  QQuickItem& interface_;
  QQuickItem view_;
  Window window_ = Window::palettePanel;
};

}  // namespace tolvane
