#include "platform/desktop/struts.h"

#include <cstddef>

namespace tolvane {

namespace {

using Edge = Strut::Edge;

/// A stretch of an edge, in pixels.
struct Stretch {
  double first;
  double length;
};

Rectangle stripAlong(Edge edge, double depth, Stretch stretch, Size desktop) {
  switch (edge) {
    case Edge::left:
      return {0, stretch.first, depth, stretch.length};
    case Edge::right:
      return {desktop.width - depth, stretch.first, depth, stretch.length};
    case Edge::top:
      return {stretch.first, 0, stretch.length, depth};
    case Edge::bottom:
      return {stretch.first, desktop.height - depth, stretch.length, depth};
  }
  return {};
}

}  // namespace

std::vector<Strut> Strut::parse(const std::vector<std::uint32_t>& numbers, Size desktop) {
  constexpr std::size_t depthsOnly = 4;
  constexpr std::size_t withStretches = 12;
  std::vector<Strut> struts;
  if (numbers.size() != depthsOnly && numbers.size() != withStretches) {
    return struts;
  }
  std::size_t at = 0;
  for (const Edge edge : {Edge::left, Edge::right, Edge::top, Edge::bottom}) {
    const bool isUpright = edge == Edge::left || edge == Edge::right;
    Stretch stretch{0, isUpright ? desktop.height : desktop.width};
    if (numbers.size() == withStretches) {
      const double first = numbers[depthsOnly + 2 * at];
      const double last = numbers[depthsOnly + 2 * at + 1];
      stretch = {first, last - first + 1};
    }
    const double depth = numbers[at++];
    if (depth > 0) {
      struts.push_back({edge, stripAlong(edge, depth, stretch, desktop)});
    }
  }
  return struts;
}

Rectangle Strut::takenFrom(const Rectangle& screen) const {
  double left = screen.minX();
  double right = screen.maxX();
  double top = screen.minY();
  double bottom = screen.maxY();
  if (strip.intersects(screen)) {
    switch (edge) {
      case Edge::left:
        left = strip.maxX();
        break;
      case Edge::right:
        right = strip.minX();
        break;
      case Edge::top:
        top = strip.maxY();
        break;
      case Edge::bottom:
        bottom = strip.minY();
        break;
    }
  }
  const bool isCovered = left >= right || top >= bottom;
  return isCovered ? screen : Rectangle{left, top, right - left, bottom - top};
}

}  // namespace tolvane
