#pragma once

#include "platform/desktop/content_view.h"
#include "platform/desktop/palette_panel.h"
#include "platform/desktop/qt/backdrop_item.h"
#include "platform/desktop/qt/content_window.h"
#include "platform/desktop/x11/x_compositor.h"
#include "platform/desktop/x11/x_server.h"
#include "platform/desktop/x11/x_window_shape.h"

class QVariantAnimation;

namespace tolvane {

/// The palette as a managed window: only such a one takes part in input methods and makes room for
/// a screen lock. Where windows are blended, the window is larger than the panel's frame by a
/// margin that its shadow falls on; elsewhere it is cut to its shape and always opaque.
class QtPalettePanel final : public PalettePanel {
 public:
  /// @param server not owned; outlives this object.
  explicit QtPalettePanel(XServer& server);
  ~QtPalettePanel() override;
  QtPalettePanel(const QtPalettePanel&) = delete;
  QtPalettePanel& operator=(const QtPalettePanel&) = delete;

  [[nodiscard]] ContentWindow& window() { return window_; }
  /// @param shape of the backdrop, in the frame's coordinates, origin top-left, y down.
  void setShape(const Path& shape, ContentView::FreeParts freeParts);

  void onDismiss(std::function<void()> dismiss) override { window_.onDismiss(std::move(dismiss)); }
  [[nodiscard]] Rectangle frame() const override;
  void setFrame(const Rectangle& frame) override;
  [[nodiscard]] bool isVisible() const override { return window_.isVisible(); }
  void makeKeyAndOrderFront() override;
  void orderOut() override;
  /// Nothing to do: setShape() has the server itself let events through where they are to be
  /// ignored, and it is never late for a pointer that moves fast.
  void setMouseEvents(MouseEvents) override {}
  void setOpacity(double opacity) override;
  void fadeIn(std::chrono::milliseconds duration) override;

 private:
  [[nodiscard]] int margin() const;
  [[nodiscard]] bool isBlended() const { return blending_ != Blending::none; }
  void place(const Rectangle& frame);
  void applyShape();
  void compositorChanged();

  XServer& server_;
  XCompositor compositor_;
  Blending blending_ = Blending::none;  // as the window is set up for
  ContentWindow window_;
  BackdropItem backdrop_;
  XWindowShape windowShape_;
  Path shape_;
  ContentView::FreeParts freeParts_ = ContentView::FreeParts::takePointer;
  std::unique_ptr<QVariantAnimation> fade_;
};

}  // namespace tolvane
