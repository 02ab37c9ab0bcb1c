#include "desktop/native_policies.h"

#include <limits>

#include <gtest/gtest.h>

namespace tolvane {

void PrintTo(const Rectangle& r, std::ostream* out) {
  *out << "(" << r.x << ", " << r.y << ", " << r.width << "x" << r.height << ")";
}

namespace {

const Rectangle screen{0, 0, 1000, 800};
const double notANumber = std::numeric_limits<double>::quiet_NaN();

struct FrameCase {
  const char* label;
  Point pointer;
  Rectangle visible;
  std::optional<Rectangle> file;
  Rectangle expected;
};
void PrintTo(const FrameCase& c, std::ostream* out) {
  *out << c.label;
}

class PaletteFrameTest : public testing::TestWithParam<FrameCase> {};

TEST_P(PaletteFrameTest, StandsWhereThereIsRoom) {
  const auto& [label, pointer, visible, file, expected] = GetParam();
  EXPECT_EQ(NativePolicies::paletteFrame(pointer, visible, 270, 360, file), expected);
}

// The margin is 12: from 12 to 988, and to 788.
INSTANTIATE_TEST_SUITE_P(
    Pointer,
    PaletteFrameTest,
    testing::Values(
        FrameCase{"right of it", {400, 500}, screen, {}, {414, 254, 360, 270}},
        FrameCase{"last place on the right", {614, 500}, screen, {}, {628, 254, 360, 270}},
        FrameCase{"left of it", {615, 500}, screen, {}, {241, 254, 360, 270}},
        FrameCase{"at the right edge", {1000, 500}, screen, {}, {626, 254, 360, 270}},
        FrameCase{"at the top", {400, 800}, screen, {}, {414, 518, 360, 270}},
        FrameCase{"at the bottom", {400, 0}, screen, {}, {414, 12, 360, 270}},
        FrameCase{"outside on the left", {-500, 400}, screen, {}, {12, 154, 360, 270}},
        FrameCase{"second screen", {1100, 400}, {1000, 100, 800, 600}, {}, {1114, 154, 360, 270}},
        FrameCase{"no room on either side", {200, 300}, {0, 0, 400, 400}, {}, {12, 54, 360, 270}},
        FrameCase{"small screen", {50, 50}, {0, 0, 200, 100}, {}, {12, 12, 176, 76}},
        FrameCase{"no screen to speak of", {5, 5}, {0, 0, 10, 10}, {}, {12, 12, 1, 1}}));

INSTANTIATE_TEST_SUITE_P(
    File,
    PaletteFrameTest,
    testing::Values(
        FrameCase{"right of it", {}, screen, Rectangle{100, 400, 64, 64}, {176, 206, 360, 270}},
        FrameCase{
            "last on the right", {}, screen, Rectangle{552, 400, 64, 64}, {628, 206, 360, 270}},
        FrameCase{"left of it", {}, screen, Rectangle{553, 400, 64, 64}, {181, 206, 360, 270}},
        FrameCase{"top", {}, screen, Rectangle{100, 730, 64, 64}, {176, 518, 360, 270}},
        FrameCase{"bottom", {}, screen, Rectangle{100, 20, 64, 64}, {176, 12, 360, 270}},
        FrameCase{"below it", {}, screen, Rectangle{300, 400, 400, 40}, {320, 118, 360, 270}},
        FrameCase{"above it", {}, screen, Rectangle{300, 290, 400, 40}, {320, 342, 360, 270}},
        FrameCase{
            "last place below", {}, screen, Rectangle{300, 294, 400, 40}, {320, 12, 360, 270}},
        FrameCase{
            "wider than all", {}, screen, Rectangle{-50, 400, 300, 40}, {262, 182, 360, 270}}));

class RadialFrameTest : public testing::TestWithParam<FrameCase> {};

TEST_P(RadialFrameTest, IsASquareInsideTheMargin) {
  const auto& [label, pointer, visible, file, expected] = GetParam();
  EXPECT_EQ(NativePolicies::radialFrame(pointer, visible, 460, file), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Places,
    RadialFrameTest,
    testing::Values(
        FrameCase{"around the pointer", {500, 400}, screen, {}, {270, 170, 460, 460}},
        FrameCase{
            "around the file", {1, 1}, screen, Rectangle{480, 380, 20, 60}, {260, 180, 460, 460}},
        FrameCase{"bottom left", {0, 0}, screen, {}, {8, 8, 460, 460}},
        FrameCase{"top right", {1000, 800}, screen, {}, {532, 332, 460, 460}},
        FrameCase{"low screen", {500, 100}, {0, 0, 1000, 300}, {}, {358, 8, 284, 284}},
        FrameCase{"narrow screen", {100, 400}, {0, 0, 200, 800}, {}, {8, 308, 184, 184}},
        FrameCase{"no screen to speak of", {5, 5}, {0, 0, 10, 10}, {}, {8, 8, 1, 1}}));

TEST(PaletteFrame, IsOnePointWhereTheSizeIsNoNumber) {
  const Rectangle frame =
      NativePolicies::paletteFrame({400, 500}, {0, 0, notANumber, 800}, 270, notANumber, {});
  EXPECT_EQ(frame.width, 1);
}

TEST(AppKitFrame, CountsFromTheBottom) {
  EXPECT_EQ(NativePolicies::appKitFrame({10, 20, 64, 32}, 800), (Rectangle{10, 748, 64, 32}));
  // On a screen above the primary one.
  EXPECT_EQ(NativePolicies::appKitFrame({-5, -100, 10, 50}, 800), (Rectangle{-5, 850, 10, 50}));
}

TEST(PointerPalette, IsOfferedForShiftAndTheSecondaryButtonInTheFileManager) {
  const auto offered = NativePolicies::shouldOfferPointerPalette;
  EXPECT_TRUE(offered("com.apple.finder", true, true));
  EXPECT_FALSE(offered("com.apple.finder", false, true));
  EXPECT_FALSE(offered("com.apple.finder", true, false));
  EXPECT_FALSE(offered("com.apple.Finder", true, true));
  EXPECT_FALSE(offered(std::nullopt, true, true));
}

}  // namespace
}  // namespace tolvane
