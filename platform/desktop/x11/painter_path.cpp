#include "platform/desktop/x11/painter_path.h"

#include <QPainterPath>
#include <QPolygonF>

namespace tolvane {

QPainterPath painterPathOf(const Path& shape) {
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  for (const Path::Polygon& polygon : shape.polygons()) {
    QPolygonF corners;
    for (const Point& corner : polygon) {
      corners << QPointF(corner.x, corner.y);
    }
    path.addPolygon(corners);
    path.closeSubpath();
  }
  return path;
}

}  // namespace tolvane
