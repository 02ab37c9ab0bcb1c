#include <csignal>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "tests/desktop_host/session.h"
#include "tests/support/eventually.h"

namespace tolvane {
namespace {

using support::eventually;
using support::eventuallyActive;
using support::Host;
using support::isPaletteVisible;
using support::output;
using support::paletteSize;
using support::Program;
using support::xdotool;

constexpr const char* wheel = "460x460";

class DesktopHostTest : public support::SessionTest {
 protected:
  void openWithShortcut() const {
    xdotool("key ctrl+alt+c");
    ASSERT_TRUE(eventuallyActive("tolvane"));
  }

  /// A spreadsheet has five conversions, and no tool.
  std::string spreadsheet_ = folder_.write("a b.csv", "1,2\n").string();
  Host host_;
};

bool isWheel() {
  return paletteSize() == wheel;
}

TEST_F(DesktopHostTest, OpensWithTheShortcutAndGivesTheFocusBackOnEscape) {
  for (int round = 0; round < 3; ++round) {
    openWithShortcut();
    EXPECT_EQ(paletteSize(), "320x300");
    xdotool("key Escape");
    EXPECT_TRUE(eventuallyActive("other"));
    EXPECT_TRUE(eventually([] { return !isPaletteVisible(); }));
  }
}

TEST_F(DesktopHostTest, TheShortcutWorksWithNumLock) {
  xdotool("key Num_Lock");
  openWithShortcut();
}

TEST_F(DesktopHostTest, APressElsewhereDismisses) {
  openWithShortcut();
  xdotool("mousemove 1000 700 click 1");
  EXPECT_TRUE(eventually([] { return !isPaletteVisible(); }));
  EXPECT_TRUE(eventuallyActive("other"));
}

TEST_F(DesktopHostTest, APressOnThePaletteDoesNot) {
  openWithShortcut();
  // Right and below the pointer is the palette; nothing is there to be pressed.
  xdotool("mousemove 540 395 click 1");
  xdotool("mousemove 1000 300");
  EXPECT_TRUE(isPaletteVisible());
}

TEST_F(DesktopHostTest, APressInAGapOfTheWheelReachesTheWindowBelow) {
  xdotool("mousemove 1100 700");  // above the other window
  ASSERT_EQ(output(std::string(TOLVANE_PROGRAM) + " open '" + spreadsheet_ + "'"), "");
  ASSERT_TRUE(eventually(isWheel));
  ASSERT_TRUE(eventuallyActive("tolvane"));
  xdotool("mousemove 1101 701 mousemove 1100 700 click 1");  // the wheel's middle is empty
  EXPECT_TRUE(eventuallyActive("other"));
  EXPECT_TRUE(eventually([] { return !isPaletteVisible(); }));
}

TEST_F(DesktopHostTest, APageShownAgainHasTheKeyboardAndNotTheButtonUsedLast) {
  const auto open = [this] {
    ASSERT_EQ(output(std::string(TOLVANE_PROGRAM) + " open '" + spreadsheet_ + "'"), "");
    ASSERT_TRUE(eventually(isWheel));
    ASSERT_TRUE(eventuallyActive("tolvane"));
  };
  open();
  xdotool("key Tab key Tab key Return");  // "All actions"
  ASSERT_TRUE(eventually([] { return !isWheel(); }));
  const std::string actions = paletteSize();
  open();
  xdotool("key Right key Return");  // the first conversion
  ASSERT_TRUE(eventually([] { return !isWheel(); }));
  EXPECT_NE(paletteSize(), actions) << "this is the page of one conversion";
}

TEST_F(DesktopHostTest, TakesPastedFiles) {
  output("echo 'file://" + folder_.path().string() +
         "/a%20b.csv' | xclip -selection clipboard -t text/uri-list > /dev/null 2>&1");
  openWithShortcut();
  xdotool("key ctrl+v");
  EXPECT_TRUE(eventually(isWheel));
}

TEST_F(DesktopHostTest, TakesDroppedFilesWhenOpenedDuringTheDrag) {
  const Program source({DRAG_SOURCE, spreadsheet_});
  ASSERT_TRUE(eventuallyActive("drag source"));
  xdotool("mousemove 1300 800 mousedown 1 mousemove 1250 780 mousemove 1100 300");
  openWithShortcut();
  // Both programs have time to agree on each place before the button is let go.
  xdotool(
      "mousemove 1200 400 sleep 0.3 mousemove 1210 410 sleep 0.3 mousemove 1200 400 sleep 0.3 "
      "mouseup 1");
  EXPECT_TRUE(eventually(isWheel));
}

TEST_F(DesktopHostTest, ASecondOneHandsItsFilesOver) {
  // Its name is no text.
  const std::string file = folder_.write("caf\xe9.csv", "1,2\n").string();
  Program second({TOLVANE_DESKTOP, file});
  EXPECT_EQ(second.wait(), EXIT_SUCCESS);
  EXPECT_TRUE(eventually(isWheel));
}

TEST_F(DesktopHostTest, EndsWhenTheSessionEnds) {
  host_.signal(SIGTERM);
  EXPECT_EQ(host_.wait(), EXIT_SUCCESS);
}

class OpenCommandTest : public support::SessionTest {
 protected:
  void TearDown() override {
    output(
        "kill $(gdbus call --session -d org.freedesktop.DBus -o / -m "
        "org.freedesktop.DBus.GetConnectionUnixProcessID app.tolvane.Desktop | tr -cd ' 0-9' | "
        "cut -d ' ' -f 2)");
    EXPECT_TRUE(eventually([] { return !support::isOnBus(support::hostName); }));
    EXPECT_TRUE(eventually([] { return !isPaletteVisible(); }));
  }

  static std::string open(const std::string& words) {
    return output(std::string(TOLVANE_PROGRAM) + " open " + words);
  }
};

TEST_F(OpenCommandTest, StartsTheHostWhenNoneIsRunning) {
  ASSERT_EQ(open(folder_.write("caf\xe9.csv", "1,2\n").string()), "");
  EXPECT_TRUE(eventually(isWheel));
}

TEST_F(OpenCommandTest, WithoutFilesStartsTheHostWithWhatIsSelected) {
  ASSERT_EQ(open(""), "");
  EXPECT_TRUE(eventuallyActive("tolvane"));
  EXPECT_EQ(paletteSize(), "320x300");
}

}  // namespace
}  // namespace tolvane
