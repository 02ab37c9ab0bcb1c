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

Point middleOf(const QPoint& pixel) {
  constexpr double half = 0.5;
  const QPoint corner = origin();
  return {pixel.x() - corner.x() + half, corner.y() - pixel.y() - half};
}

Rectangle fromQt(const QRect& rectangle) {
  const QPoint corner = origin();
  return {static_cast<double>(rectangle.x() - corner.x()),
          static_cast<double>(corner.y() - rectangle.y() - rectangle.height()),
          static_cast<double>(rectangle.width()),
          static_cast<double>(rectangle.height())};
}

QRect toQt(const Rectangle& rectangle) {
  const QPoint corner = origin();
  return {static_cast<int>(std::floor(corner.x() + rectangle.minX())),
          static_cast<int>(std::floor(corner.y() - rectangle.maxY())),
          static_cast<int>(std::lround(rectangle.width)),
          static_cast<int>(std::lround(rectangle.height))};
}

}  // namespace tolvane::ScreenSpace
