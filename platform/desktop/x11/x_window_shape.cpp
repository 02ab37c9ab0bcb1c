#include "platform/desktop/x11/x_window_shape.h"

#include <vector>

#include <QBitmap>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QRegion>
#include <QWindow>
#include <xcb/shape.h>
#include <xcb/xcb.h>

namespace tolvane {

namespace {

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

/// The pixels whose middles lie in the shape: corners that are rounded to pixels would show.
/// @param scale pixels a point.
QRegion regionOf(const Path& shape, QSize size, double scale) {
  QBitmap pixels(size * scale);
  pixels.clear();
  QPainter painter(&pixels);
  painter.scale(scale, scale);
  painter.fillPath(painterPathOf(shape), Qt::color1);
  painter.end();
  return {pixels};
}

std::vector<xcb_rectangle_t> rectanglesOf(const QRegion& region) {
  std::vector<xcb_rectangle_t> rectangles;
  for (const QRect& part : region) {
    rectangles.push_back({static_cast<std::int16_t>(part.x()),
                          static_cast<std::int16_t>(part.y()),
                          static_cast<std::uint16_t>(part.width()),
                          static_cast<std::uint16_t>(part.height())});
  }
  return rectangles;
}

}  // namespace

XWindowShape::XWindowShape(XServer& server, QWindow& window) : server_(server), window_(window) {}

void XWindowShape::set(const Path& shape) {
  shape_ = shape;
  apply();
}

void XWindowShape::apply() {
  window_.setMask(server_.isComposited() ? QRegion() : regionOf(shape_, window_.size(), 1));
  applyInput();
}

void XWindowShape::applyInput() {
  if (window_.handle() == nullptr) {
    return;
  }
  const auto rectangles =
      rectanglesOf(regionOf(shape_, window_.size(), window_.devicePixelRatio()));
  xcb_shape_rectangles(server_.connection(),
                       XCB_SHAPE_SO_SET,
                       XCB_SHAPE_SK_INPUT,
                       XCB_CLIP_ORDERING_UNSORTED,
                       static_cast<XWindow>(window_.winId()),
                       0,
                       0,
                       static_cast<std::uint32_t>(rectangles.size()),
                       rectangles.data());
  xcb_flush(server_.connection());
}

}  // namespace tolvane
