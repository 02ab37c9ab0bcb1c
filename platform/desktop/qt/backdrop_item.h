#pragma once

#include <QImage>
#include <QPainterPath>
#include <QQuickPaintedItem>

#include "platform/desktop/path.h"
#include "platform/desktop/x11/x_compositor.h"

namespace tolvane {

/// The ground that the interface stands on: a filled shape with a fine edge, in the desktop's
/// window colour. Where windows are blended it has a soft shadow, and where what lies behind is
/// blurred it lets some of that through.
class BackdropItem final : public QQuickPaintedItem {
 public:
  explicit BackdropItem(QQuickItem* parent);

  /// @param shape in the item's coordinates, origin top-left, y down; with room for the shadow.
  void setShape(const Path& shape, Blending blending);

  void paint(QPainter* painter) override;

 private:
  QPainterPath shape_;
  QImage shadow_;
  Blending blending_ = Blending::none;
};

}  // namespace tolvane
