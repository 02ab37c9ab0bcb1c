#pragma once

#include <QImage>

class QPainterPath;

namespace tolvane::SoftShadow {

/// How far a shadow reaches out of its shape, at most. Points.
inline constexpr int reach = 32;

/// @param shape lies within the size, at least `reach` from each side.
/// @return the shadow, smaller than the size by a whole number: it has nothing fine to lose.
[[nodiscard]] QImage of(const QPainterPath& shape, QSize size);

}  // namespace tolvane::SoftShadow
