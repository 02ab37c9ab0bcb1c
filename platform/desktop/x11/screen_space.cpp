#include "platform/desktop/x11/screen_space.h"

#include <algorithm>
#include <cmath>

#include <QGuiApplication>
#include <QRect>
#include <QScreen>

namespace tolvane::ScreenSpace {

namespace {

/// As Qt counts.
QRect primaryFrame() {
  const QScreen* primary = QGuiApplication::primaryScreen();
  return primary != nullptr ? primary->geometry() : QRect();
}

/// The bottom-left corner of the primary screen, as Qt counts.
QPoint origin() {
  const QRect frame = primaryFrame();
  return {frame.x(), frame.y() + frame.height()};
}

/// How many columns and rows the pixel lies outside of the frame.
double distance(const Point& pixel, const Rectangle& frame) {
  return std::max({frame.minX() - pixel.x, pixel.x + 1 - frame.maxX(), 0.0}) +
         std::max({frame.minY() - pixel.y, pixel.y + 1 - frame.maxY(), 0.0});
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

Rectangle nativeFrame(const QScreen& screen) {
  const QRect frame = screen.geometry();
  const double scale = screen.devicePixelRatio();
  return {static_cast<double>(frame.x()),
          static_cast<double>(frame.y()),
          frame.width() * scale,
          frame.height() * scale};
}

Point pointOn(const QScreen& screen, const Point& pixel) {
  const Rectangle frame = nativeFrame(screen);
  const double scale = screen.devicePixelRatio();
  return {frame.x + (pixel.x - frame.x) / scale, frame.y + (pixel.y - frame.y) / scale};
}

Point pointOf(const Point& pixel) {
  const QList<QScreen*> screens = QGuiApplication::screens();
  const auto nearest =
      std::min_element(screens.begin(), screens.end(), [&](const auto* one, const auto* other) {
        return distance(pixel, nativeFrame(*one)) < distance(pixel, nativeFrame(*other));
      });
  return nearest != screens.end() ? pointOn(**nearest, pixel) : pixel;
}

Point fromPrimary(const Point& point) {
  const QRect frame = primaryFrame();
  return {point.x - frame.x(), point.y - frame.y()};
}

}  // namespace tolvane::ScreenSpace
