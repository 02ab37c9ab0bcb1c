#include <cstdlib>
#include <string>

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <gtest/gtest.h>

#include "platform/desktop/x11/x_server.h"
#include "tests/desktop_host/session.h"
#include "tests/support/eventually.h"

namespace tolvane {
namespace {

using support::activeWindow;
using support::eventually;
using support::eventuallyActive;
using support::Host;
using support::isPaletteVisible;
using support::output;
using support::Program;
using support::xdotool;

constexpr const char* paletteId = "$(xdotool search --onlyvisible --name '^tolvane$' | tail -1)";
constexpr const char* settingsId =
    "$(xdotool search --onlyvisible --name '^tolvane Settings$' | tail -1)";

/// The palette in its first stage, 320 by 300, its top edge 24 above the pointer and 14 to the
/// right.
class PaletteHostTest : public support::SessionTest {
 protected:
  void SetUp() override {
    SessionTest::SetUp();
    // A known ground below the palette.
    xdotool("search --name '^other$' windowmove 300 200 windowsize 800 600");
  }

  void open() const {
    xdotool("mousemove 500 400 key ctrl+alt+c");
    ASSERT_TRUE(eventuallyActive("tolvane"));
  }
  void openSettings() const {
    open();
    xdotool("mousemove 775 404 click 1");
    ASSERT_TRUE(eventuallyActive("tolvane Settings"));
  }

  static std::string property(const char* name) {
    return output(std::string("xprop -id ") + paletteId + " " + name);
  }
  static bool isOnEveryWorkspace() {
    return property("_NET_WM_DESKTOP") == "_NET_WM_DESKTOP(CARDINAL) = 4294967295";
  }
  static QColor pixel(int x, int y) {
    return QGuiApplication::primaryScreen()->grabWindow(0, x, y, 1, 1).toImage().pixelColor(0, 0);
  }

  static constexpr int left = 514;
  static constexpr int top = 376;
  static constexpr int bottom = top + 300;  // the first row below

  int count_ = 1;
  std::string name_ = "test";
  char* words_[2] = {name_.data(), nullptr};
  QGuiApplication application_{count_, words_};
  Host host_;
};

void press(int x, int y) {
  xdotool("mousemove " + std::to_string(x) + " " + std::to_string(y) + " click 1 sleep 0.2");
}

TEST_F(PaletteHostTest, TakesPressesInItsOwnRowsAndNoOthers) {
  open();
  EXPECT_TRUE(eventually(isOnEveryWorkspace));
  press(left + 60, top);
  EXPECT_TRUE(isPaletteVisible());
  press(left + 60, bottom - 1);
  EXPECT_TRUE(isPaletteVisible());
  press(left + 60, bottom);
  EXPECT_TRUE(eventually([] { return !isPaletteVisible(); }));
}

TEST_F(PaletteHostTest, APressOnACornerThatIsCutOffDismisses) {
  open();
  press(left + 1, top + 1);
  EXPECT_TRUE(eventually([] { return !isPaletteVisible(); }));
  EXPECT_TRUE(eventuallyActive("other"));
}

TEST_F(PaletteHostTest, SleepsWhileThePointerMovesElsewhere) {
  open();
  const std::string wakings = "grep ^voluntary /proc/$(xprop -id " + std::string(paletteId) +
                              " _NET_WM_PID | sed 's/.*= //')/status | sed 's/.*\\t//'";
  xdotool("mousemove 1300 100 sleep 0.5");
  const int before = std::atoi(output(wakings).c_str());
  std::string moves;
  for (int round = 0; round < 150; ++round) {
    moves += "mousemove 1300 100 mousemove 1400 200 ";
  }
  xdotool(moves);
  EXPECT_LT(std::atoi(output(wakings).c_str()) - before, 100);
}

TEST_F(PaletteHostTest, TheSettingsKeepTheirSizeAndAreLeftByOneEscape) {
  openSettings();
  output(std::string("xdotool windowsize ") + settingsId + " 700 900 sleep 0.3");
  const std::string geometry = std::string("xdotool getwindowgeometry ") + settingsId;
  EXPECT_NE(output(geometry).find("Geometry: 460x720"), std::string::npos);
  EXPECT_NE(output(std::string("xprop -id ") + settingsId + " WM_NORMAL_HINTS")
                .find("maximum size: 460 by 720"),
            std::string::npos);
  xdotool("keydown Escape sleep 1.2 keyup Escape");  // repeats itself
  EXPECT_TRUE(isPaletteVisible());
  EXPECT_EQ(activeWindow(), "tolvane");
}

TEST_F(PaletteHostTest, TheSettingsComeBackToTheirSizeWhenThereIsRoomAgain) {
  const auto panel = [](const char* depth) {
    output(std::string("xprop -name other -f _NET_WM_STRUT 32c -set _NET_WM_STRUT '0, 0, 0, ") +
           depth + "'");
  };
  const std::string geometry = std::string("xdotool getwindowgeometry ") + settingsId;
  panel("300");
  openSettings();
  EXPECT_NE(output(geometry).find("Geometry: 460x660"), std::string::npos) << output(geometry);
  xdotool("key Escape");
  ASSERT_TRUE(eventuallyActive("tolvane"));
  xdotool("key Escape");
  ASSERT_TRUE(eventuallyActive("other"));
  panel("0");
  openSettings();
  EXPECT_NE(output(geometry).find("Geometry: 460x720"), std::string::npos) << output(geometry);
}

/// With a compositing manager, which draws no shadows of its own.
class BlendedPaletteTest : public PaletteHostTest {
 protected:
  class Compositor {
   public:
    Compositor() {
      EXPECT_TRUE(eventually([] { return XServer().hasOwner("_NET_WM_CM_S0"); }));
    }

   private:
    Program picom_{{"picom", "--config", "/dev/null", "--backend", "xrender"}};
  };
  /// 255 on the white window without a shadow.
  static int lightnessBelow(int distance) {
    return pixel(left + 160, bottom + distance).lightness();
  }
  /// Whether the white window below the palette is grey, less so further down, and white at last.
  static bool hasShadow() {
    const int near = lightnessBelow(4);
    const int further = lightnessBelow(16);
    return near > 100 && near < further && further < 255 && lightnessBelow(40) == 255;
  }
};

TEST_F(BlendedPaletteTest, HasASoftShadowThatLetsThePointerThrough) {
  const Compositor blending;
  open();
  ASSERT_TRUE(eventually(hasShadow));
  press(left + 1, top + 1);  // the corner is round, and the palette's all the same
  EXPECT_TRUE(isPaletteVisible());
  EXPECT_EQ(activeWindow(), "tolvane");
  press(left + 160, bottom + 4);
  EXPECT_TRUE(eventually([] { return !isPaletteVisible(); }));
  EXPECT_TRUE(eventuallyActive("other"));
}

TEST_F(BlendedPaletteTest, FollowsACompositorThatComesAndGoes) {
  open();
  EXPECT_EQ(lightnessBelow(4), 255);
  {
    const Compositor blending;
    EXPECT_TRUE(eventually(hasShadow));
  }
  // The corner is cut again, and not black.
  EXPECT_TRUE(eventually([] {
    return support::paletteSize() == "320x300" && lightnessBelow(4) == 255 &&
           pixel(left + 1, top + 1).lightness() == 255;
  }));
}

TEST_F(BlendedPaletteTest, AsksForABlurWhereThereIsOneToHave) {
  constexpr const char* region = "_KDE_NET_WM_BLUR_BEHIND_REGION";
  const Compositor blending;
  open();
  ASSERT_TRUE(eventually(hasShadow));
  EXPECT_NE(property(region).find("not found"), std::string::npos);
  xdotool("key Escape");
  output(std::string("xprop -root -f ") + region + " 32c -set " + region + " 0");
  open();
  EXPECT_TRUE(
      eventually([region] { return property(region).find("CARDINAL) = ") != std::string::npos; }));
  output(std::string("xprop -root -remove ") + region);
}

}  // namespace
}  // namespace tolvane
