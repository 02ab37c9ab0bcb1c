#pragma once

#include "platform/desktop/content_view.h"
#include "platform/desktop/qt/backdrop_item.h"
#include "platform/desktop/qt/qt_palette_panel.h"
#include "platform/desktop/qt/qt_settings_window.h"

namespace tolvane {

/// The interface's item above its backdrop, in one of the two windows.
class QtContentView final : public ContentView {
 public:
  /// Puts the view into the panel.
  /// @param interface fills the view. Nothing is owned; all outlive this object.
  QtContentView(QQuickItem& interface, QtPalettePanel& panel, QtSettingsWindow& settings);

  void moveTo(Window window) override;
  [[nodiscard]] Size size() const override;
  void setBackdropShape(const Path& shape) override;

 private:
  void layOut();

  QtPalettePanel& panel_;
  QtSettingsWindow& settings_;
  QQuickItem& interface_;
  QQuickItem view_;
  BackdropItem backdrop_;
  Window window_ = Window::palettePanel;
};

}  // namespace tolvane
