#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "platform/desktop/path.h"

namespace tolvane {
namespace {

constexpr double pi = std::numbers::pi;

/// Non-zero winding, edge by edge.
bool holds(const std::vector<Path::Polygon>& polygons, Point point) {
  int windings = 0;
  for (const Path::Polygon& polygon : polygons) {
    for (std::size_t index = 0; index < polygon.size(); ++index) {
      const Point from = polygon[index];
      const Point to = polygon[(index + 1) % polygon.size()];
      const double side =
          (to.x - from.x) * (point.y - from.y) - (to.y - from.y) * (point.x - from.x);
      windings += from.y <= point.y && to.y > point.y && side > 0 ? 1 : 0;
      windings -= from.y > point.y && to.y <= point.y && side < 0 ? 1 : 0;
    }
  }
  return windings != 0;
}

Path circle() {
  Path path;
  path.addCircle({50, 50}, 40);
  return path;
}

Path ring(Path::Turn innerTurn) {
  Path path = circle();
  path.moveTo({70, 50});
  path.arc({50, 50}, 20, 0, pi, innerTurn);
  path.arc({50, 50}, 20, pi, 0, innerTurn);
  path.close();
  return path;
}

Path roundedRectangle() {
  Path path;
  path.addRoundedRectangle({10, 20, 60, 40}, 15);
  return path;
}

/// A leaf between two parabolas, the lower one through (50, 25), the upper one through (50, 75).
Path leaf() {
  Path path;
  path.moveTo({0, 50});
  path.quadraticTo({100, 50}, {50, 0});
  path.quadraticTo({0, 50}, {50, 100});
  return path;
}

/// Lies on its side: its curve turns back in x, not in y.
Path sail() {
  Path path;
  path.moveTo({0, 0});
  path.quadraticTo({0, 100}, {100, 50});
  return path;
}

struct ShapeCase {
  const char* label;
  Path path;
  Point point;
  bool isInside;
};
void PrintTo(const ShapeCase& c, std::ostream* out) {
  *out << c.label << " at (" << c.point.x << ", " << c.point.y << ")";
}

class PathTest : public testing::TestWithParam<ShapeCase> {};

TEST_P(PathTest, HoldsWhatItsCurvesEncloseAlsoWhenFlipped) {
  const auto& [label, path, point, isInside] = GetParam();
  EXPECT_EQ(path.contains(point), isInside);
  EXPECT_EQ(path.flipped(100).contains({point.x, 100 - point.y}), isInside);
  EXPECT_EQ(path.movedBy({7, -3}).contains({point.x + 7, point.y - 3}), isInside);
}

const double diagonal = 40 / std::numbers::sqrt2;
const double near = 1e-9;
INSTANTIATE_TEST_SUITE_P(
    Shapes,
    PathTest,
    testing::Values(
        ShapeCase{"nothing", {}, {0, 0}, false},
        ShapeCase{"circle", circle(), {50, 50}, true},
        ShapeCase{"circle, its leftmost", circle(), {10 + near, 50}, true},
        ShapeCase{"circle, left of it", circle(), {10 - near, 50}, false},
        ShapeCase{"circle, its top", circle(), {50, 90 - near}, true},
        ShapeCase{"circle, above", circle(), {50, 90 + near}, false},
        ShapeCase{"circle", circle(), {50 + diagonal - near, 50 + diagonal - near}, true},
        ShapeCase{"circle", circle(), {50 + diagonal + near, 50 + diagonal + near}, false},
        ShapeCase{"ring", ring(Path::Turn::clockwise), {50, 75}, true},
        ShapeCase{"ring's hole", ring(Path::Turn::clockwise), {50, 69.999}, false},
        ShapeCase{"ring of one turn", ring(Path::Turn::counterClockwise), {50, 50}, true},
        ShapeCase{"rounded", roundedRectangle(), {10 + near, 40}, true},
        ShapeCase{"rounded, corner", roundedRectangle(), {11, 21}, false},
        ShapeCase{"rounded, corner", roundedRectangle(), {14.5, 24.5}, true},
        ShapeCase{"leaf, bottom", leaf(), {50, 25 + near}, true},
        ShapeCase{"leaf, below", leaf(), {50, 25 - near}, false},
        ShapeCase{"leaf", leaf(), {25, 31.25 + near}, true},
        ShapeCase{"leaf", leaf(), {25, 31.25 - near}, false},
        ShapeCase{"leaf, at its tips' height", leaf(), {50, 50}, true},
        ShapeCase{"leaf, left of its tip", leaf(), {-1, 50}, false},
        ShapeCase{"sail", sail(), {50 - near, 50}, true},
        ShapeCase{"sail, beside it", sail(), {50 + near, 50}, false}));

TEST(Path, TurnsByLessThanAFullCircle) {
  Path wrapped;  // counter-clockwise from 90 degrees on to 0: three quarters
  wrapped.moveTo({0, 0});
  wrapped.arc({0, 0}, 10, pi / 2, 0, Path::Turn::counterClockwise);
  wrapped.close();
  EXPECT_TRUE(wrapped.contains({-5, -5}));
  EXPECT_FALSE(wrapped.contains({5, 5}));
}

class PolygonTest : public testing::TestWithParam<double> {};

TEST_P(PolygonTest, StaysWithinItsTolerance) {
  const double tolerance = GetParam();
  for (const Path& path : {circle(), ring(Path::Turn::clockwise), roundedRectangle(), leaf()}) {
    const auto polygons = path.polygons(tolerance);
    for (double x = -2.03; x < 102; x += 1.37) {
      for (double y = -2.07; y < 102; y += 1.31) {
        const auto isNearEdge = [&](double dx, double dy) {
          return path.contains({x + dx, y + dy}) != path.contains({x, y});
        };
        const double reach = tolerance * 1.5;
        if (holds(polygons, {x, y}) != path.contains({x, y})) {
          EXPECT_TRUE(isNearEdge(reach, 0) || isNearEdge(-reach, 0) || isNearEdge(0, reach) ||
                      isNearEdge(0, -reach))
              << x << ", " << y;
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Tolerances, PolygonTest, testing::Values(5.0, 0.5, 0.01));

TEST(Path, TakesNoMorePointsThanItNeeds) {
  EXPECT_EQ(circle().polygons(0.1).front().size(), 45U);  // pi / acos(1 - 0.1 / 40), rounded up
  EXPECT_EQ(ring(Path::Turn::clockwise).polygons().size(), 2U);
  Path square;
  square.moveTo({0, 0});
  square.lineTo({1, 0});
  square.lineTo({1, 1});
  square.lineTo({0, 0});
  square.close();
  EXPECT_EQ(square.polygons(), (std::vector<Path::Polygon>{{{0, 0}, {1, 0}, {1, 1}}}));
}

}  // namespace
}  // namespace tolvane
