#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <QEventLoop>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/window_places.h"
#include "platform/desktop/x11/raw_input.h"
#include "platform/desktop/x11/screen_space.h"
#include "platform/desktop/x11/user_action.h"
#include "platform/desktop/x11/x_event_taps.h"
#include "platform/desktop/x11/x_front_application.h"
#include "platform/desktop/x11/x_hot_keys.h"
#include "platform/desktop/x11/x_pointer.h"
#include "platform/desktop/x11/x_screens.h"
#include "platform/desktop/x11/x_server.h"
#include "tests/desktop_host/session.h"
#include "tests/support/eventually.h"
#include "tests/support/variable.h"

namespace tolvane {
namespace {

using support::activeWindow;
using support::eventually;
using support::eventuallyActive;
using support::output;
using support::Program;
using support::xdotool;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

/// The adapters themselves, on a connection of the test's own.
class X11Test : public support::SessionTest {
 protected:
  template <typename Condition>
  static bool eventuallyInLoop(const Condition& condition) {
    return eventually([&condition] {
      QGuiApplication::processEvents();
      return condition();
    });
  }

  static void workFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
  }

  int count_ = 1;
  std::string name_ = "test";
  char* words_[2] = {name_.data(), nullptr};
  QGuiApplication application_{count_, words_};
  XServer server_;
};

TEST_F(X11Test, TellsWhichApplicationIsInFront) {
  const QWindow palette;
  XFrontApplication front(server_, palette);
  const auto terminal = front.current();
  ASSERT_TRUE(terminal);
  EXPECT_EQ(terminal->bundleIdentifier, "xterm");
  EXPECT_FALSE(terminal->isThisProcess);
  for (const char* kind : {"Thunar", "Caja"}) {
    const Program manager({"xterm", "-class", kind, "-T", "files"});
    ASSERT_TRUE(eventuallyActive("files"));
    const auto files = front.current();
    ASSERT_TRUE(files);
    EXPECT_EQ(files->bundleIdentifier, fileManagerBundle) << kind;
    front.activate(*terminal);
    EXPECT_TRUE(eventuallyActive("other"));
    EXPECT_TRUE(front.isRunning(*files));
  }
  EXPECT_TRUE(eventuallyActive("other"));
  EXPECT_TRUE(front.isRunning(*terminal));
}

TEST_F(X11Test, LooksThroughThePaletteAtTheApplicationBehindIt) {
  QWindow palette;
  palette.setTitle("palette");
  QWindow settings;
  settings.setTitle("settings");
  const XFrontApplication front(server_, palette);
  const auto windowInFront = [&front](QWindow& window, const char* title) {
    window.show();
    window.requestActivate();
    EXPECT_TRUE(eventuallyInLoop([title] { return support::activeWindow() == title; }));
    return front.current();
  };
  auto behind = windowInFront(palette, "palette");
  ASSERT_TRUE(behind);
  EXPECT_EQ(behind->bundleIdentifier, "xterm");
  EXPECT_FALSE(behind->isThisProcess);

  behind = windowInFront(settings, "settings");
  ASSERT_TRUE(behind);
  EXPECT_TRUE(behind->isThisProcess);
  settings.destroy();
  behind = windowInFront(palette, "palette");
  ASSERT_TRUE(behind) << "a window of our own takes nobody's place";
  EXPECT_EQ(behind->bundleIdentifier, "xterm");

  auto manager = std::make_optional<Program>(
      std::vector<std::string>{"xterm", "-class", "Thunar", "-T", "files"});
  ASSERT_TRUE(eventuallyInLoop([] { return support::activeWindow() == "files"; }));
  workFor(std::chrono::milliseconds(200));  // until the notice of it is here
  behind = windowInFront(palette, "palette");
  ASSERT_TRUE(behind);
  EXPECT_EQ(behind->bundleIdentifier, fileManagerBundle) << "it came to the front meanwhile";
  manager.reset();
  EXPECT_TRUE(eventuallyInLoop([&front] { return !front.current(); }));
}

TEST_F(X11Test, FollowsTheTimeOfAnActionThatIsNotLongAgo) {
  const XTime now = server_.now();
  const auto timeWith = [this](const std::string& startupId) {
    const UserAction action(server_, startupId);
    return server_.userTime();
  };
  EXPECT_EQ(timeWith("host-1-a_TIME" + std::to_string(now - 5000)), now - 5000);
  for (const std::string& other : {"host-1-a_TIME" + std::to_string(now - 60'000),
                                   "host-1-a_TIME" + std::to_string(now + 60'000),
                                   "host-1-a_TIME" + std::to_string(now) + "x",
                                   std::string("host-1-a_TIME"),
                                   std::string("host-1-a"),
                                   std::string()}) {
    const XTime time = timeWith(other);
    EXPECT_GE(time, now) << other;
    EXPECT_LE(time, server_.now()) << other;
  }
}

TEST_F(X11Test, TellsTheTimeAlsoWhenOthersWriteOnItsWindow) {
  output(
      "for id in $(xwininfo -root -children | grep -o '^ *0x[0-9a-f]*'); do "
      "xprop -id $id -f NOTE 32c -set NOTE 1; done");
  const XTime time = XServer().now();
  EXPECT_GE(server_.now(), time);
}

TEST_F(X11Test, TellsButtonsByWhatTheUserHasThemStandFor) {
  RawInput input(server_);
  std::vector<std::uint32_t> told;
  const auto listener = input.listen([&told](std::uint32_t button) { told.push_back(button); });
  const auto toldOf = [&](const char* mapping) {
    output(std::string("xmodmap -e 'pointer = ") + mapping + "'");
    told.clear();
    xdotool("mousemove 1000 700 click 3 click 2 click 1");
    EXPECT_TRUE(eventuallyInLoop([&told] { return told.size() >= 2; }));
    workFor(std::chrono::milliseconds(100));
    return told;
  };
  EXPECT_THAT(toldOf("1 2 3"), ElementsAre(3, 2, 1));
  EXPECT_THAT(toldOf("3 2 1"), ElementsAre(1, 2, 3)) << "left-handed";
  EXPECT_THAT(toldOf("1 0 3"), ElementsAre(3, 1)) << "the middle button is off";
  output("xmodmap -e 'pointer = default'");
}

TEST_F(X11Test, TapsSecondaryPressesInOtherApplications) {
  RawInput input(server_);
  const QWindow palette;
  const XFrontApplication front(server_, palette);
  XEventTaps taps(server_, input, front);
  std::vector<std::uint64_t> flags;
  const auto tap = taps.create(TapEvent::secondaryPresses,
                               [&flags](const TapEvent& event) { flags.push_back(event.flags); });
  ASSERT_NE(tap, nullptr);
  xdotool("mousemove 1000 700 click 3");  // not enabled yet
  tap->enable();
  QGuiApplication::processEvents();
  static_cast<void>(server_.exists(server_.root()));  // a round trip: the server has the request
  xdotool("click 1 click 3 keydown shift click 3 keyup shift");
  EXPECT_TRUE(eventuallyInLoop([&flags] { return flags.size() >= 2; }));
  // Modifiers are read when the press is told, which may be after the key was let go.
  EXPECT_EQ(flags.size(), 2U);
  flags.clear();
  xdotool("keydown shift click 3");
  EXPECT_TRUE(eventuallyInLoop([&flags] { return !flags.empty(); }));
  xdotool("keyup shift");
  EXPECT_THAT(flags, ElementsAre(TapEvent::shift));
}

TEST_F(X11Test, APressInTheFileManagerIsOneInItsWindowsWhileItIsInFront) {
  RawInput input(server_);
  QWindow palette;
  palette.setTitle("palette");
  palette.create();
  const XFrontApplication front(server_, palette);
  XEventTaps taps(server_, input, front);
  int presses = 0;
  const auto tap = taps.create(TapEvent::secondaryPresses, [&](const TapEvent&) {
    const auto application = front.current();
    presses += application && application->bundleIdentifier == fileManagerBundle ? 1 : 0;
  });
  tap->enable();
  int told = 0;  // after the tap
  const auto listener = input.listen([&told](std::uint32_t) { ++told; });
  static_cast<void>(server_.exists(server_.root()));
  const auto pressOn = [&told](const std::string& place, const char* title) {
    told = 0;
    xdotool("mousemove " + place);
    // Beside the loop: a press is told before the window manager changes the active window.
    Program press({"xdotool", "click", "3"});
    EXPECT_TRUE(eventuallyInLoop([&] { return told == 1 && activeWindow() == title; }));
    EXPECT_EQ(press.wait(), EXIT_SUCCESS);
  };
  const Program files({"xterm", "-class", "Thunar", "-geometry", "40x10+50+50", "-T", "files"});
  ASSERT_TRUE(eventuallyActive("files"));
  pressOn("1000 700", "other");
  EXPECT_EQ(presses, 0);
  output("xdotool search --name '^files$' windowactivate --sync");
  pressOn("100 100", "files");
  EXPECT_EQ(presses, 1);
  workFor(std::chrono::milliseconds(200));  // until the notice of them is here
  // What the window manager says until it has seen the press.
  server_.setNumbers(server_.root(), "_NET_ACTIVE_WINDOW", {static_cast<XWindow>(palette.winId())});
  pressOn("100 100", "palette");
  EXPECT_EQ(presses, 2) << "the palette takes the keyboard, but not the front";
  // The file manager's desktop is of the same application, whatever class its window has.
  const Program desktop(
      {"xterm", "-class", "Xfdesktop", "-geometry", "40x10+600+50", "-T", "desk"});
  ASSERT_TRUE(eventuallyActive("desk"));
  // Again where the window manager was just between two active windows.
  presses = 0;
  for (int attempt = 0; presses < 1 && attempt < 5; ++attempt) {
    pressOn("100 100", "files");
    pressOn("700 100", "desk");
  }
  EXPECT_GE(presses, 1);
}

TEST_F(X11Test, AKeyHasOneOwnerAndIsFreeAgainAfterwards) {
  constexpr HotKey controlOptionX = {HotKey::keyX, HotKey::control + HotKey::option};
  constexpr int badAccess = 10;
  XHotKeys first(server_);
  const auto taken = first.registerKey(controlOptionX);
  ASSERT_EQ(taken.status, 0);
  {
    const support::Host host;  // holds another key
    xdotool("key ctrl+alt+c");
    EXPECT_TRUE(eventuallyActive("tolvane"));
    const HotKey ofHost = {HotKey::keyC, HotKey::control + HotKey::option};
    EXPECT_EQ(first.registerKey(ofHost).status, badAccess);
  }
  EXPECT_EQ(first.registerKey({99, 0}).status, XHotKeys::unknownKey);
  int presses = 0;
  first.onPressed([&presses] { ++presses; });
  xdotool("keydown ctrl keydown alt keydown x sleep 1 keyup x keyup alt keyup ctrl");
  EXPECT_TRUE(eventuallyInLoop([&presses] { return presses > 0; }));
  EXPECT_EQ(presses, 1) << "a key that is held down repeats itself";
  first.unregisterKey(taken.reference);
  EXPECT_EQ(first.registerKey(controlOptionX).status, 0);
}

TEST_F(X11Test, ClaimsNeitherKeysNorPressesOnAWaylandDesktop) {
  const support::Variable wayland("WAYLAND_DISPLAY", "wayland-0");
  XServer server;
  RawInput input(server);
  const QWindow palette;
  const XFrontApplication front(server, palette);
  EXPECT_EQ(XEventTaps(server, input, front).create(TapEvent::secondaryPresses, {}), nullptr);
  XHotKeys hotKeys(server);
  int presses = 0;
  hotKeys.onPressed([&presses] { ++presses; });
  for (const std::uint32_t key : {HotKey::keyX, HotKey::keyV}) {
    EXPECT_EQ(hotKeys.registerKey({key, HotKey::control + HotKey::option}).status,
              XHotKeys::keptByWayland);
  }
  xdotool("key ctrl+alt+x");
  EXPECT_TRUE(eventuallyInLoop([&presses] { return presses == 1; }))
      << "the first key works where keys come at all";
  xdotool("key ctrl+alt+v key ctrl+alt+x");
  EXPECT_TRUE(eventuallyInLoop([&presses] { return presses > 1; }));
  workFor(std::chrono::milliseconds(100));
  EXPECT_EQ(presses, 2) << "a key that is refused does nothing";
}

TEST_F(X11Test, CountsScreensFromTheBottomLeft) {
  const auto screens = XScreens(server_).all();
  ASSERT_EQ(screens.size(), 1U);
  EXPECT_EQ(screens.front().frame, (Rectangle{0, 0, 1600, 1000}));
  EXPECT_EQ(XScreens(server_).main(), screens.front());
}

/// Two screens, one above the other, of 1600 by 500; the lower one is the primary.
class TwoScreensTest : public X11Test {
 protected:
  void SetUp() override {
    X11Test::SetUp();
    output(
        "xrandr --setmonitor upper 1600/400x500/125+0+0 screen; "
        "xrandr --setmonitor '*lower' 1600/400x500/125+0+500 none");
    ASSERT_TRUE(eventuallyInLoop([] { return QGuiApplication::screens().size() == 2; }));
  }
  void TearDown() override {
    output("xrandr --delmonitor lower; xrandr --delmonitor upper");
    X11Test::TearDown();
  }

  [[nodiscard]] std::vector<Rectangle> frames() const {
    std::vector<Rectangle> found;
    for (const Screen& screen : screens_.all()) {
      found.push_back(screen.frame);
    }
    return found;
  }
  /// Where a window that shows its corner there has it, from that of the primary screen.
  [[nodiscard]] Point cornerAt(const QPoint& pixel) const {
    QWindow window;
    window.setFlag(Qt::BypassWindowManagerHint);
    window.setTitle("files");
    window.show();
    QGuiApplication::processEvents();
    const std::string id = std::to_string(window.winId());
    xdotool("windowmove " + id + " " + std::to_string(pixel.x() - 26) + " " +
            std::to_string(pixel.y() - 20));
    output("xprop -id " + id +
           " -f _GTK_FRAME_EXTENTS 32c -set _GTK_FRAME_EXTENTS '26, 28, 20, 30'");
    const auto place = windowPlace(server_, static_cast<XWindow>(window.winId()));
    EXPECT_TRUE(place);
    EXPECT_EQ(place->title, "files");
    return ScreenSpace::fromPrimary(place->origin);
  }

  XScreens screens_{server_};
};

TEST_F(TwoScreensTest, AreCountedFromThePrimaryOne) {
  EXPECT_THAT(frames(),
              UnorderedElementsAre(Rectangle{0, 0, 1600, 500}, Rectangle{0, 500, 1600, 500}));
  EXPECT_EQ(screens_.all().front().frame.y, 0);
  EXPECT_EQ(cornerAt({300, 700}), (Point{300, 200}));
  EXPECT_EQ(cornerAt({300, 100}), (Point{300, -400}));
}

/// Two pixels make a point.
struct DoubledPixels {
  support::Variable factor{"QT_SCALE_FACTOR", "2"};
};
class ScaledScreensTest : DoubledPixels, public TwoScreensTest {};

TEST_F(ScaledScreensTest, AreCountedInPoints) {
  // The corners of screens are not scaled.
  EXPECT_THAT(frames(),
              UnorderedElementsAre(Rectangle{0, 0, 800, 250}, Rectangle{0, 500, 800, 250}));
  EXPECT_EQ(cornerAt({300, 700}), (Point{150, 100}));
  EXPECT_EQ(cornerAt({300, 100}), (Point{150, -450}));
}

TEST_F(TwoScreensTest, EachHoldsThePixelsThatItShows) {
  QWindow palette;
  RawInput input(server_);
  const XPointer pointer(server_, input, palette);
  const auto holderOf = [&](int row) {
    xdotool("mousemove 300 " + std::to_string(row));
    std::vector<double> tops;
    for (const Screen& screen : screens_.all()) {
      if (screen.frame.contains(pointer.location())) {
        tops.push_back(screen.frame.maxY());
      }
    }
    return tops;
  };
  const std::vector<double> upper = holderOf(200);
  const std::vector<double> lower = holderOf(700);
  EXPECT_NE(upper, lower);
  EXPECT_EQ(holderOf(0), upper);
  EXPECT_EQ(holderOf(499), upper);
  EXPECT_EQ(holderOf(500), lower);
  EXPECT_EQ(holderOf(999), lower);
}

TEST_F(TwoScreensTest, ArePartlyCoveredByPanels) {
  const auto heights = [this] {
    std::vector<double> found;
    for (const Screen& screen : screens_.all()) {
      found.push_back(screen.visibleFrame.height);
    }
    return found;
  };
  EXPECT_THAT(heights(), ElementsAre(500, 500));
  output("xprop -name other -f _NET_WM_STRUT 32c -set _NET_WM_STRUT '0, 0, 30, 0'");
  EXPECT_THAT(heights(), UnorderedElementsAre(470, 500));
  output(
      "xprop -name other -f _NET_WM_STRUT_PARTIAL 32c -set _NET_WM_STRUT_PARTIAL "
      "'0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 0, 1599'");
  EXPECT_THAT(heights(), UnorderedElementsAre(460, 500));
}

}  // namespace
}  // namespace tolvane
