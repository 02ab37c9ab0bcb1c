#pragma once

#include "platform/desktop/geometry.h"

class QPoint;
class QRect;
class QScreen;

/// The one place where the ways to count are turned into each other: points from the bottom-left
/// corner of the primary screen, y up; Qt's points, from the top-left corner of the desktop, y
/// down; the server's pixels of the root window. Without a screen nothing is changed. Main thread
/// only.
namespace tolvane::ScreenSpace {

/// A pixel that Qt names by its row and column covers an area, and its middle is inside that area
/// whichever edges count: it lies in the frames that show the pixel and in no other.
[[nodiscard]] Point middleOf(const QPoint& pixel);
[[nodiscard]] Rectangle fromQt(const QRect& rectangle);
/// The top-left corner becomes that of the pixel it lies in; the size is rounded.
[[nodiscard]] QRect toQt(const Rectangle& rectangle);

/// A screen's frame in the server's pixels, y down: its corner is not scaled, its size is.
[[nodiscard]] Rectangle nativeFrame(const QScreen& screen);
/// A pixel of the root window as Qt's point, y down, by the scale of the screen.
[[nodiscard]] Point pointOn(const QScreen& screen, const Point& pixel);
/// The same by the scale of the screen that shows the pixel, or is the nearest to it.
[[nodiscard]] Point pointOf(const Point& pixel);
/// Qt's point as one from the top-left corner of the primary screen, y down.
[[nodiscard]] Point fromPrimary(const Point& point);

}  // namespace tolvane::ScreenSpace
