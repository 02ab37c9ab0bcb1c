#pragma once

#include "platform/desktop/geometry.h"

class QPoint;
class QRect;

/// The one place where points from the bottom-left corner of the primary screen, y up, and Qt's,
/// from the top-left corner of the desktop, y down, are turned into each other. Without a screen
/// nothing is moved. Main thread only.
namespace tolvane::ScreenSpace {

[[nodiscard]] Point fromQt(const QPoint& point);
[[nodiscard]] Rectangle fromQt(const QRect& rectangle);
/// Rounded to whole points.
[[nodiscard]] QRect toQt(const Rectangle& rectangle);

}  // namespace tolvane::ScreenSpace
