#pragma once

#include <QPainterPath>
#include <QQuickPaintedItem>

#include "platform/desktop/path.h"

namespace tolvane {

/// The ground that the interface stands on: a filled shape with a fine edge, in the desktop's
/// window colour.
class BackdropItem final : public QQuickPaintedItem {
 public:
  explicit BackdropItem(QQuickItem* parent);

  /// @param shape in the item's coordinates, origin top-left, y down.
  void setShape(const Path& shape);

  void paint(QPainter* painter) override;

 private:
  QPainterPath shape_;
};

}  // namespace tolvane
