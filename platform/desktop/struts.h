#pragma once

#include <cstdint>
#include <vector>

#include "platform/desktop/geometry.h"

namespace tolvane {

/// A strip along one edge of the whole desktop that a panel keeps for itself. In pixels from the
/// top-left corner of the desktop, y down: a rectangle's `y` is that of its top edge.
struct Strut {
  enum class Edge { left, right, top, bottom };

  Edge edge;
  Rectangle strip;

  /// @param numbers what the panel tells window managers: how deep its strips reach in from the
  /// left, right, top and bottom edge; then, where strips do not run along the whole edge, the
  /// first and the last pixel of each. Other counts than 4 and 12 tell nothing.
  /// @return those that are not empty.
  [[nodiscard]] static std::vector<Strut> parse(const std::vector<std::uint32_t>& numbers,
                                                Size desktop);

  /// What the strip leaves of a screen. Strips are counted from the edge of the desktop: one of a
  /// panel on a screen further in covers the screens in front of it, which lose nothing by that.
  [[nodiscard]] Rectangle takenFrom(const Rectangle& screen) const;
};

}  // namespace tolvane
