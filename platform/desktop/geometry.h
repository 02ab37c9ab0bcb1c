#pragma once

#include <algorithm>

/// Screen geometry in points. Unless a header says otherwise the origin is the bottom-left corner
/// of the primary screen and y grows upwards. Adapters of systems that count from the top-left
/// corner flip in one place of their own.
namespace tolvane {

struct Point {
  double x = 0;
  double y = 0;

  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  double width = 0;
  double height = 0;

  friend bool operator==(const Size&, const Size&) = default;
};

struct Rectangle {
  double x = 0;  ///< of the left edge
  double y = 0;  ///< of the bottom edge
  double width = 0;
  double height = 0;

  [[nodiscard]] double minX() const { return x; }
  [[nodiscard]] double midX() const { return x + width / 2; }
  [[nodiscard]] double maxX() const { return x + width; }
  [[nodiscard]] double minY() const { return y; }
  [[nodiscard]] double midY() const { return y + height / 2; }
  [[nodiscard]] double maxY() const { return y + height; }
  [[nodiscard]] Point middle() const { return {midX(), midY()}; }

  /// The left and bottom edges belong to the rectangle, the right and top ones do not.
  [[nodiscard]] bool contains(Point point) const {
    return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
  }
  /// @return whether both share an area; touching edges share none.
  [[nodiscard]] bool intersects(const Rectangle& other) const {
    return minX() < other.maxX() && other.minX() < maxX() && minY() < other.maxY() &&
           other.minY() < maxY();
  }
  /// A side with less room than the two margins becomes 0.
  [[nodiscard]] Rectangle insetBy(double margin) const {
    return {x + margin,
            y + margin,
            std::max(0.0, width - 2 * margin),
            std::max(0.0, height - 2 * margin)};
  }

  friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

}  // namespace tolvane
