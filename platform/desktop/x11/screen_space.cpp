#include "platform/desktop/x11/screen_space.h"

#include <cmath>

#include <QGuiApplication>
#include <QRect>
#include <QScreen>

namespace tolvane::ScreenSpace {

namespace {

/// The bottom-left corner of the primary screen, as Qt counts.
QPoint origin() {
  const QScreen* primary = QGuiApplication::primaryScreen();
  const QRect frame = primary != nullptr ? primary->geometry() : QRect();
  return {frame.x(), frame.y() + frame.height()};
}

}  // namespace

Point fromQt(const QPoint& point) {
  const QPoint corner = origin();
  return {static_cast<double>(point.x() - corner.x()), static_cast<double>(corner.y() - point.y())};
}

Rectangle fromQt(const QRect& rectangle) {
  const Point bottomLeft = fromQt(QPoint(rectangle.x(), rectangle.y() + rectangle.height()));
  return {bottomLeft.x,
          bottomLeft.y,
          static_cast<double>(rectangle.width()),
          static_cast<double>(rectangle.height())};
}

QRect toQt(const Rectangle& rectangle) {
  const QPoint corner = origin();
  return {corner.x() + static_cast<int>(std::lround(rectangle.x)),
          corner.y() - static_cast<int>(std::lround(rectangle.maxY())),
          static_cast<int>(std::lround(rectangle.width)),
          static_cast<int>(std::lround(rectangle.height))};
}

}  // namespace tolvane::ScreenSpace
