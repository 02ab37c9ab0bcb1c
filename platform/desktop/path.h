#pragma once

#include <variant>
#include <vector>

#include "platform/desktop/geometry.h"

namespace tolvane {

/// A filled shape of straight lines, circular arcs and quadratic curves. What is inside follows the
/// non-zero winding rule; a subpath that is not closed is filled as if it were. Angles are in
/// radians, counted from the x axis towards the y axis.
class Path {
 public:
  enum class Turn { counterClockwise, clockwise };

  /// Starts a subpath; the next four continue it.
  void moveTo(Point point);
  void lineTo(Point point);
  void quadraticTo(Point end, Point control);
  /// Turns from the angle `start` to `end` in the given direction, by less than a full circle. The
  /// current point is joined to the start by a line.
  void arc(Point centre, double radius, double start, double end, Turn turn);
  void close();

  /// A subpath of its own.
  void addCircle(Point centre, double radius);
  /// A subpath of its own. @param radius of the corners; at most half of the shorter side is used.
  void addRoundedRectangle(const Rectangle& rectangle, double radius);

  [[nodiscard]] bool isEmpty() const { return segments_.empty(); }

  /// Computed on the curves themselves, not on polygons.
  [[nodiscard]] bool contains(Point point) const;

  /// Mirrored by (x, y) -> (x, height - y): from y up to y down within `height`, and back.
  [[nodiscard]] Path flipped(double height) const;

  /// Moved by that much along both axes.
  [[nodiscard]] Path movedBy(Point distance) const;

  using Polygon = std::vector<Point>;
  /// One closed polygon a subpath, its first point not repeated; to be filled together, by the
  /// non-zero winding rule.
  /// @param tolerance the greatest distance of a polygon from its curve, in points; above 0.
  [[nodiscard]] std::vector<Polygon> polygons(double tolerance = 0.1) const;

  struct Move {
    Point to;
  };
  struct Line {
    Point to;
  };
  struct Quadratic {
    Point control;
    Point to;
  };
  struct Arc {
    Point centre;
    double radius;
    double start;
    double sweep;  ///< counter-clockwise when positive

    [[nodiscard]] Point at(double angle) const;
    [[nodiscard]] Point end() const { return at(start + sweep); }
  };
  using Segment = std::variant<Move, Line, Quadratic, Arc>;

 private:
  template <typename Change>
  [[nodiscard]] Path changedBy(const Change& change) const;

  std::vector<Segment> segments_;
  Point start_;  // of the current subpath
};

}  // namespace tolvane
