#include "platform/desktop/x11/x_window_shape.h"

#include <QPainterPath>
#include <QPolygonF>
#include <QRegion>
#include <QTransform>
#include <QWindow>
#include <xcb/shape.h>
#include <xcb/xcb.h>

namespace tolvane {

namespace {

/// @param scale pixels a point.
QRegion regionOf(const Path& shape, double scale) {
  QRegion region;
  for (const Path::Polygon& polygon : shape.polygons()) {
    QPolygonF corners;
    for (const Point& corner : polygon) {
      corners << QPointF(corner.x * scale, corner.y * scale);
    }
    region += QRegion(corners.toPolygon(), Qt::WindingFill);
  }
  return region;
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

void XWindowShape::setMouseEvents(MouseEvents events) {
  if (events != events_) {
    events_ = events;
    applyInput();
  }
}

void XWindowShape::apply() {
  window_.setMask(server_.isComposited() ? QRegion() : regionOf(shape_, 1));
  applyInput();
}

void XWindowShape::applyInput() {
  if (window_.handle() == nullptr) {
    return;
  }
  const auto rectangles = events_ == MouseEvents::ignored
                              ? std::vector<xcb_rectangle_t>()
                              : rectanglesOf(regionOf(shape_, window_.devicePixelRatio()));
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
