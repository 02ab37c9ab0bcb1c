#include <gtest/gtest.h>

#include "platform/desktop/struts.h"

namespace tolvane {

void PrintTo(const Rectangle& r, std::ostream* out) {
  *out << "(" << r.x << ", " << r.y << ", " << r.width << "x" << r.height << ")";
}

namespace {

// Two screens beside each other; the right one is lower.
constexpr Size desktop{1800, 1000};
const Rectangle leftScreen{0, 0, 800, 1000};
const Rectangle rightScreen{800, 0, 1000, 600};

struct StrutCase {
  const char* label;
  std::vector<std::uint32_t> numbers;
  Rectangle left;
  Rectangle right;
};
void PrintTo(const StrutCase& c, std::ostream* out) {
  *out << c.label;
}

class StrutTest : public testing::TestWithParam<StrutCase> {
 protected:
  static Rectangle leftOf(Rectangle screen) {
    for (const Strut& strut : Strut::parse(GetParam().numbers, desktop)) {
      screen = strut.takenFrom(screen);
    }
    return screen;
  }
};

TEST_P(StrutTest, TakesTheStripFromTheScreensThatItLiesOn) {
  EXPECT_EQ(leftOf(leftScreen), GetParam().left);
  EXPECT_EQ(leftOf(rightScreen), GetParam().right);
}

INSTANTIATE_TEST_SUITE_P(
    Panels,
    StrutTest,
    testing::Values(
        StrutCase{"none", {}, leftScreen, rightScreen},
        StrutCase{"no room", {0, 0, 0, 0}, leftScreen, rightScreen},
        StrutCase{"not a strut", {30, 0, 0}, leftScreen, rightScreen},
        StrutCase{"whole top", {0, 0, 30, 0}, {0, 30, 800, 970}, {800, 30, 1000, 570}},
        StrutCase{"top of the left screen",
                  {0, 0, 30, 0, 0, 0, 0, 0, 0, 799, 0, 0},
                  {0, 30, 800, 970},
                  rightScreen},
        StrutCase{"top of the right screen",
                  {0, 0, 30, 0, 0, 0, 0, 0, 800, 1799, 0, 0},
                  leftScreen,
                  {800, 30, 1000, 570}},
        StrutCase{"bottom of the left screen",
                  {0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 0, 799},
                  {0, 0, 800, 960},
                  rightScreen},
        // Counted from the bottom of the desktop, 400 below the screen.
        StrutCase{"bottom of the right screen",
                  {0, 0, 0, 440, 0, 0, 0, 0, 0, 0, 800, 1799},
                  leftScreen,
                  {800, 0, 1000, 560}},
        StrutCase{"left and right of all", {50, 60, 0, 0}, {50, 0, 750, 1000}, {800, 0, 940, 600}},
        // Both are counted across the other screen, which keeps all of its own.
        StrutCase{"right of the left screen",
                  {0, 1050, 0, 0, 0, 0, 0, 999, 0, 0, 0, 0},
                  {0, 0, 750, 1000},
                  rightScreen},
        StrutCase{"left of the right screen",
                  {840, 0, 0, 0, 0, 599, 0, 0, 0, 0, 0, 0},
                  leftScreen,
                  {840, 0, 960, 600}}));

}  // namespace
}  // namespace tolvane
