#include "platform/desktop/x11/x_window_shape.h"

#include <utility>
#include <vector>

#include <QBitmap>
#include <QPainter>
#include <QPainterPath>
#include <QRegion>
#include <QWindow>
#include <xcb/shape.h>
#include <xcb/xcb.h>

#include "platform/desktop/x11/painter_path.h"

namespace tolvane {

namespace {

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

void XWindowShape::set(Parts parts) {
  parts_ = std::move(parts);
  apply();
}

void XWindowShape::apply() {
  const bool isCut = parts_.blending == Blending::none;
  window_.setMask(isCut ? regionOf(parts_.seen, window_.size(), 1) : QRegion());
  if (window_.handle() != nullptr) {
    applyInput();
    applyBlur();
    xcb_flush(server_.connection());
  }
}

void XWindowShape::applyInput() {
  const auto rectangles =
      rectanglesOf(regionOf(parts_.taking, window_.size(), window_.devicePixelRatio()));
  xcb_shape_rectangles(server_.connection(),
                       XCB_SHAPE_SO_SET,
                       XCB_SHAPE_SK_INPUT,
                       XCB_CLIP_ORDERING_UNSORTED,
                       static_cast<XWindow>(window_.winId()),
                       0,
                       0,
                       static_cast<std::uint32_t>(rectangles.size()),
                       rectangles.data());
}

void XWindowShape::applyBlur() {
  const auto handle = static_cast<XWindow>(window_.winId());
  if (parts_.blending != Blending::blurred) {
    server_.removeProperty(handle, XCompositor::blurRegion);
    return;
  }
  std::vector<std::uint32_t> numbers;
  for (const QRect& part : regionOf(parts_.seen, window_.size(), window_.devicePixelRatio())) {
    for (const int number : {part.x(), part.y(), part.width(), part.height()}) {
      numbers.push_back(static_cast<std::uint32_t>(number));
    }
  }
  server_.setNumbers(handle, XCompositor::blurRegion, numbers);
}

}  // namespace tolvane
