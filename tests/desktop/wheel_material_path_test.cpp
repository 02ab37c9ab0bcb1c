#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "desktop/native_policies.h"

namespace tolvane {
namespace {

const Size view{460, 460};  // outer radius 216, inner radius 100.28

/// @param angle in radians, clockwise from straight up.
Point at(double radius, double angle) {
  return {230 + radius * std::sin(angle), 230 + radius * std::cos(angle)};
}

struct HitCase {
  const char* label;
  std::int64_t count;
  Point point;
  bool isInside;
};
void PrintTo(const HitCase& c, std::ostream* out) {
  *out << c.label << ", " << c.count << " actions";
}

class WheelTest : public testing::TestWithParam<HitCase> {};

TEST_P(WheelTest, HoldsWedgesAndControls) {
  const auto& [label, count, point, isInside] = GetParam();
  EXPECT_EQ(NativePolicies::wheelMaterialPath(view, count).contains(point), isInside);
}

const double gapEdge = 0.0175;  // half of the gap between two wedges
const double sixth = std::numbers::pi / 3;

INSTANTIATE_TEST_SUITE_P(
    Wedges,
    WheelTest,
    testing::Values(HitCase{"no action", 0, at(150, 0), false},
                    HitCase{"first wedge, straight up", 6, at(150, 0), true},
                    HitCase{"second wedge", 6, at(150, sixth), true},
                    HitCase{"gap", 6, at(150, sixth / 2), false},
                    HitCase{"just before the gap", 6, at(150, sixth / 2 - gapEdge - 1e-9), true},
                    HitCase{"just inside the gap", 6, at(150, sixth / 2 - gapEdge + 1e-9), false},
                    HitCase{"just behind the gap", 6, at(150, sixth / 2 + gapEdge + 1e-9), true},
                    HitCase{"outer edge", 6, at(215.999, 0), true},
                    HitCase{"outside", 6, at(216.001, 0), false},
                    HitCase{"inner edge", 6, at(100.281, 0), true},
                    HitCase{"inside the ring", 6, at(100.279, 0), false},
                    // A corner of 10 leaves out what lies right at its tip.
                    HitCase{"corner", 6, at(215, sixth / 2 - gapEdge - 0.004), false},
                    HitCase{"one action's gap, below", 1, at(150, std::numbers::pi), false},
                    HitCase{"one action, left", 1, at(150, -std::numbers::pi / 2), true},
                    HitCase{"more than can be seen", 180, at(150, 0), false}));

// Controls stand below (the rounded rectangle) and above (four circles) the centre.
INSTANTIATE_TEST_SUITE_P(Controls,
                         WheelTest,
                         testing::Values(HitCase{"rectangle", 6, {230, 182}, true},
                                         HitCase{"its left edge", 6, {158.01, 182}, true},
                                         HitCase{"left of it", 6, {157.99, 182}, false},
                                         HitCase{"its top", 6, {230, 201.99}, true},
                                         HitCase{"above it", 6, {230, 202.01}, false},
                                         HitCase{"its corner", 6, {158.5, 162.5}, false},
                                         HitCase{"first circle", 6, {185, 291}, true},
                                         HitCase{"its edge", 6, {173.01, 291}, true},
                                         HitCase{"fourth circle", 6, {275, 291}, true},
                                         HitCase{"between two circles", 6, {230, 291}, false},
                                         HitCase{"centre", 6, {230, 230}, false}));

TEST(WheelMaterialPath, StaysWholeAtAnySizeAndCount) {
  for (const double side : {0.0, 1.0, 28.0, 29.0, 60.0}) {
    for (const std::int64_t count : {1, 30, 179, 1000000000}) {
      const Path wheel = NativePolicies::wheelMaterialPath({side, side}, count);
      EXPECT_FALSE(wheel.contains({-1000, -1000})) << side << " " << count;
      EXPECT_FALSE(wheel.polygons().empty()) << side << " " << count;
    }
  }
}

}  // namespace
}  // namespace tolvane
