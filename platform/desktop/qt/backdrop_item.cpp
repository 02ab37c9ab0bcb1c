#include "platform/desktop/qt/backdrop_item.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

namespace tolvane {

BackdropItem::BackdropItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
}

void BackdropItem::setShape(const Path& shape) {
  shape_ = QPainterPath();
  shape_.setFillRule(Qt::WindingFill);
  for (const Path::Polygon& polygon : shape.polygons()) {
    QPolygonF corners;
    for (const Point& corner : polygon) {
      corners << QPointF(corner.x, corner.y);
    }
    shape_.addPolygon(corners);
    shape_.closeSubpath();
  }
  update();
}

void BackdropItem::paint(QPainter* painter) {
  constexpr double edgeOpacity = 0.25;
  const QPalette colours = QGuiApplication::palette();
  QColor edge = colours.color(QPalette::WindowText);
  edge.setAlphaF(static_cast<float>(edgeOpacity));
  painter->fillPath(shape_, colours.color(QPalette::Window));
  painter->strokePath(shape_, QPen(edge, 1));
}

}  // namespace tolvane
