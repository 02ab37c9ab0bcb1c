#pragma once

#include "platform/desktop/path.h"

class QPainterPath;

namespace tolvane {

/// The shape for Qt's painters, its curves as polygons.
[[nodiscard]] QPainterPath painterPathOf(const Path& shape);

}  // namespace tolvane
