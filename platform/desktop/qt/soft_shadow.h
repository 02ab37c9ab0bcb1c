#pragma once

#include <QImage>

class QPainterPath;

namespace tolvane::SoftShadow {

/// How far a shadow reaches out of its shape, at most. Points.
inline constexpr int reach = 32;

/// Points a pixel of a shadow's image: it has nothing fine to lose.
inline constexpr int reduction = 4;

/// @param shape lies within the size, at least `reach` from each side.
[[nodiscard]] QImage of(const QPainterPath& shape, QSize size);

}  // namespace tolvane::SoftShadow
