#include "platform/desktop/path_segments.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace tolvane {

namespace {

using Polygon = Path::Polygon;

Point between(Point from, Point to, double part) {
  return {std::lerp(from.x, to.x, part), std::lerp(from.y, to.y, part)};
}

Point onCurve(Point from, const Path::Quadratic& curve, double part) {
  return between(between(from, curve.control, part), between(curve.control, curve.to, part), part);
}

/// Counts the crossings of a ray from the point to the right, the upward ones against the downward
/// ones. Curves are cut where they turn from rising to falling. An end of a piece at the ray's own
/// height counts as above it, so that two pieces that meet there are counted alike.
class Windings {
 public:
  explicit Windings(Point point) : point_(point) {}

  void operator()(const Path::Move& move) {
    close();
    start_ = current_ = move.to;
  }

  void operator()(const Path::Line& line) {
    cross(current_.y, line.to.y, [this, &line] {
      const double part = (point_.y - current_.y) / (line.to.y - current_.y);
      return std::lerp(current_.x, line.to.x, part);
    });
    current_ = line.to;
  }

  void operator()(const Path::Quadratic& curve) {
    const double bend = current_.y - 2 * curve.control.y + curve.to.y;
    const double turning = (current_.y - curve.control.y) / bend;
    const bool turns = turning > 0 && turning < 1;
    const double middle = turns ? turning : 1;
    crossCurve(curve, 0, middle);
    if (turns) {
      crossCurve(curve, middle, 1);
    }
    current_ = curve.to;
  }

  void operator()(const Path::Arc& arc) {
    constexpr double quarter = std::numbers::pi / 2;
    const double low = std::min(arc.start, arc.start + arc.sweep);
    const double high = std::max(arc.start, arc.start + arc.sweep);
    const int direction = arc.sweep < 0 ? -1 : 1;
    // Rising and falling change at every odd quarter turn.
    double from = low;
    for (double turn = std::floor((low - quarter) / (2 * quarter)) + 1; from < high; ++turn) {
      const double to = std::min(high, quarter + turn * 2 * quarter);
      crossArc(arc, from, to, direction);
      from = to;
    }
    current_ = arc.end();
  }

  int finish() {
    close();
    return count_;
  }

 private:
  void close() { (*this)(Path::Line{start_}); }

  /// @param crossingX tells where a piece between the two heights meets the ray's line.
  template <typename CrossingX>
  void cross(double from, double to, const CrossingX& crossingX, int weight = 1) {
    const bool isFromBelow = from < point_.y;
    const bool isToBelow = to < point_.y;
    if (isFromBelow != isToBelow && crossingX() > point_.x) {
      count_ += isFromBelow ? weight : -weight;
    }
  }

  void crossCurve(const Path::Quadratic& curve, double from, double to) {
    const double fromY = onCurve(current_, curve, from).y;
    const double toY = onCurve(current_, curve, to).y;
    cross(fromY, toY, [&] {
      const double part = std::clamp(rootOf(curve, toY > fromY ? 1 : -1), from, to);
      return onCurve(current_, curve, part).x;
    });
  }

  /// Where the curve passes the ray's height while it rises (sign 1) or falls (sign -1); of the two
  /// forms of the root the one that does not subtract two near numbers.
  [[nodiscard]] double rootOf(const Path::Quadratic& curve, int sign) const {
    const double a = sign * (current_.y - 2 * curve.control.y + curve.to.y);
    const double b = sign * 2 * (curve.control.y - current_.y);
    const double c = sign * (current_.y - point_.y);
    const double slope = std::sqrt(std::max(0.0, b * b - 4 * a * c));
    if (b < 0) {
      return (slope - b) / (2 * a);
    }
    return b + slope > 0 ? -2 * c / (b + slope) : 0;
  }

  void crossArc(const Path::Arc& arc, double from, double to, int direction) {
    cross(
        arc.at(from).y,
        arc.at(to).y,
        [&] {
          const double rise = point_.y - arc.centre.y;
          const double reach = std::sqrt(std::max(0.0, arc.radius * arc.radius - rise * rise));
          return arc.centre.x + std::copysign(reach, std::cos((from + to) / 2));
        },
        direction);
  }

  Point point_;
  Point start_;
  Point current_;
  int count_ = 0;
};

class Flattener {
 public:
  explicit Flattener(double tolerance) : tolerance_(tolerance) {}

  void operator()(const Path::Move& move) {
    polygons_.emplace_back();
    add(move.to);
  }
  void operator()(const Path::Line& line) { add(line.to); }
  void operator()(const Path::Quadratic& curve) {
    const Point from = polygons_.back().back();
    // A chord over the nth part of the curve is at most bend / (4 n * n) away from it.
    const double bend = std::hypot(from.x - 2 * curve.control.x + curve.to.x,
                                   from.y - 2 * curve.control.y + curve.to.y);
    const int chords = std::max(1, static_cast<int>(std::ceil(std::sqrt(bend / (4 * tolerance_)))));
    for (int chord = 1; chord <= chords; ++chord) {
      add(onCurve(from, curve, static_cast<double>(chord) / chords));
    }
  }
  void operator()(const Path::Arc& arc) {
    // A chord over the angle a is radius * (1 - cos(a / 2)) away from its arc.
    const double widest = 2 * std::acos(std::max(0.0, 1 - tolerance_ / arc.radius));
    const int chords = std::max(1, static_cast<int>(std::ceil(std::abs(arc.sweep) / widest)));
    for (int chord = 1; chord <= chords; ++chord) {
      add(arc.at(arc.start + arc.sweep * chord / chords));
    }
  }

  std::vector<Polygon> finish() {
    for (Polygon& polygon : polygons_) {
      while (polygon.size() > 1 && isSame(polygon.back(), polygon.front())) {
        polygon.pop_back();
      }
    }
    return std::move(polygons_);
  }

 private:
  static bool isSame(Point first, Point second) {
    constexpr double rounding = 1e-9;  // of an arc's end that was computed in two ways
    return std::hypot(first.x - second.x, first.y - second.y) < rounding;
  }

  void add(Point point) {
    Polygon& polygon = polygons_.back();
    if (polygon.empty() || !isSame(polygon.back(), point)) {
      polygon.push_back(point);
    }
  }

  double tolerance_;
  std::vector<Polygon> polygons_;
};

template <typename Visitor>
auto visited(const std::vector<Path::Segment>& segments, Visitor visitor) {
  for (const Path::Segment& segment : segments) {
    std::visit(visitor, segment);
  }
  return visitor.finish();
}

}  // namespace

int PathSegments::windings(const std::vector<Path::Segment>& segments, Point point) {
  return visited(segments, Windings(point));
}

std::vector<Polygon> PathSegments::polygons(const std::vector<Path::Segment>& segments,
                                            double tolerance) {
  return visited(segments, Flattener(tolerance));
}

}  // namespace tolvane
