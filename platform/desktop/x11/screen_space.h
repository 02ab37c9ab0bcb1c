#pragma once

#include "platform/desktop/geometry.h"

class QPoint;
class QRect;

/// The one place where points from the bottom-left corner of the primary screen, y up, and Qt's,
/// from the top-left corner of the desktop, y down, are turned into each other. Without a screen
/// nothing is moved. Main thread only.
namespace tolvane::ScreenSpace {

/// A pixel that Qt names by its row and column covers an area, and its middle is inside that area
/// whichever edges count: it lies in the frames that show the pixel and in no other.
[[nodiscard]] Point middleOf(const QPoint& pixel);
[[nodiscard]] Rectangle fromQt(const QRect& rectangle);
/// The top-left corner becomes that of the pixel it lies in; the size is rounded.
[[nodiscard]] QRect toQt(const Rectangle& rectangle);

}  // namespace tolvane::ScreenSpace
