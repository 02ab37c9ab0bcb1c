#pragma once

#include "platform/desktop/palette_panel.h"
#include "platform/desktop/qt/content_window.h"
#include "platform/desktop/x11/x_server.h"
#include "platform/desktop/x11/x_window_shape.h"

class QVariantAnimation;

namespace tolvane {

/// The palette as a managed window: only such a one takes part in input methods and makes room for
/// a screen lock. Without a compositor it is cut to its shape and always opaque.
class QtPalettePanel final : public PalettePanel {
 public:
  /// @param server not owned; outlives this object.
  explicit QtPalettePanel(XServer& server);
  ~QtPalettePanel() override;
  QtPalettePanel(const QtPalettePanel&) = delete;
  QtPalettePanel& operator=(const QtPalettePanel&) = delete;

  [[nodiscard]] ContentWindow& window() { return window_; }
  /// @param shape in the window's coordinates, origin top-left, y down.
  void setShape(const Path& shape) { shape_.set(shape); }

  void onDismiss(std::function<void()> dismiss) override { window_.onDismiss(std::move(dismiss)); }
  [[nodiscard]] Rectangle frame() const override;
  void setFrame(const Rectangle& frame) override;
  [[nodiscard]] bool isVisible() const override { return window_.isVisible(); }
  void makeKeyAndOrderFront() override;
  void orderOut() override;
  /// Nothing to do: the server itself lets events through outside the shape, which is where they
  /// are to be ignored, and is never late for a pointer that moves fast.
  void setMouseEvents(MouseEvents) override {}
  void setOpacity(double opacity) override;
  void fadeIn(std::chrono::milliseconds duration) override;

 private:
  XServer& server_;
  ContentWindow window_;
  XWindowShape shape_;
  std::unique_ptr<QVariantAnimation> fade_;
};

}  // namespace tolvane
