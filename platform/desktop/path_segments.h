#pragma once

#include <vector>

#include "platform/desktop/path.h"

/// What can be computed of a path's segments, taken one by one.
namespace tolvane::PathSegments {

/// How often the path winds counter-clockwise around the point, clockwise turns counted off.
[[nodiscard]] int windings(const std::vector<Path::Segment>& segments, Point point);

[[nodiscard]] std::vector<Path::Polygon> polygons(const std::vector<Path::Segment>& segments,
                                                  double tolerance);

}  // namespace tolvane::PathSegments
