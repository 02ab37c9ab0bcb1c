#include "platform/desktop/path.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/desktop/path_segments.h"

namespace tolvane {

namespace {

constexpr double fullTurn = 2 * std::numbers::pi;

struct Flip {
  double height;

  [[nodiscard]] Point point(Point old) const { return {old.x, height - old.y}; }
  [[nodiscard]] static double angle(double old) { return -old; }
};

struct Shift {
  Point distance;

  [[nodiscard]] Point point(Point old) const { return {old.x + distance.x, old.y + distance.y}; }
  [[nodiscard]] static double angle(double old) { return old; }
};

template <typename Change>
struct Changed {
  const Change& change;

  Path::Segment operator()(const Path::Move& move) const {
    return Path::Move{change.point(move.to)};
  }
  Path::Segment operator()(const Path::Line& line) const {
    return Path::Line{change.point(line.to)};
  }
  Path::Segment operator()(const Path::Quadratic& curve) const {
    return Path::Quadratic{change.point(curve.control), change.point(curve.to)};
  }
  Path::Segment operator()(const Path::Arc& arc) const {
    return Path::Arc{
        change.point(arc.centre), arc.radius, Change::angle(arc.start), Change::angle(arc.sweep)};
  }
};

/// @return the angle plus whole turns, 0 or more and below a full turn.
double withinOneTurn(double angle) {
  const double rest = std::fmod(angle, fullTurn);
  return rest < 0 ? rest + fullTurn : rest;
}

}  // namespace

Point Path::Arc::at(double angle) const {
  return {centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
}

void Path::moveTo(Point point) {
  start_ = point;
  segments_.emplace_back(Move{point});
}

void Path::lineTo(Point point) {
  segments_.emplace_back(Line{point});
}

void Path::quadraticTo(Point end, Point control) {
  segments_.emplace_back(Quadratic{control, end});
}

void Path::arc(Point centre, double radius, double start, double end, Turn turn) {
  const double sweep =
      turn == Turn::counterClockwise ? withinOneTurn(end - start) : -withinOneTurn(start - end);
  const Arc arc{centre, radius, start, sweep};
  segments_.emplace_back(Line{arc.at(start)});
  segments_.emplace_back(arc);
}

void Path::close() {
  segments_.emplace_back(Line{start_});
}

void Path::addCircle(Point centre, double radius) {
  const Arc circle{centre, radius, 0, fullTurn};
  moveTo(circle.at(0));
  segments_.emplace_back(circle);
  close();
}

void Path::addRoundedRectangle(const Rectangle& rectangle, double radius) {
  constexpr double quarter = fullTurn / 4;
  const double used = std::min(radius, std::min(rectangle.width, rectangle.height) / 2);
  const double left = rectangle.minX() + used;
  const double right = rectangle.maxX() - used;
  const double bottom = rectangle.minY() + used;
  const double top = rectangle.maxY() - used;
  moveTo({left, rectangle.minY()});
  arc({right, bottom}, used, -quarter, 0, Turn::counterClockwise);
  arc({right, top}, used, 0, quarter, Turn::counterClockwise);
  arc({left, top}, used, quarter, 2 * quarter, Turn::counterClockwise);
  arc({left, bottom}, used, 2 * quarter, 3 * quarter, Turn::counterClockwise);
  close();
}

bool Path::contains(Point point) const {
  return PathSegments::windings(segments_, point) != 0;
}

template <typename Change>
Path Path::changedBy(const Change& change) const {
  Path changed;
  changed.start_ = change.point(start_);
  changed.segments_.reserve(segments_.size());
  for (const Segment& segment : segments_) {
    changed.segments_.push_back(std::visit(Changed<Change>{change}, segment));
  }
  return changed;
}

Path Path::flipped(double height) const {
  return changedBy(Flip{height});
}

Path Path::movedBy(Point distance) const {
  return changedBy(Shift{distance});
}

std::vector<Path::Polygon> Path::polygons(double tolerance) const {
  return PathSegments::polygons(segments_, tolerance);
}

}  // namespace tolvane
