#include <algorithm>
#include <string>
#include <vector>

#include <QGuiApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/desktop/x11/raw_input.h"
#include "platform/desktop/x11/x_event_taps.h"
#include "platform/desktop/x11/x_front_application.h"
#include "platform/desktop/x11/x_hot_keys.h"
#include "platform/desktop/x11/x_screens.h"
#include "platform/desktop/x11/x_server.h"
#include "tests/desktop_host/session.h"
#include "tests/support/eventually.h"

namespace tolvane {
namespace {

using support::eventually;
using support::eventuallyActive;
using support::Program;
using support::xdotool;
using ::testing::ElementsAre;

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

  int count_ = 1;
  std::string name_ = "test";
  char* words_[2] = {name_.data(), nullptr};
  QGuiApplication application_{count_, words_};
  XServer server_;
};

TEST_F(X11Test, TellsWhichApplicationIsInFront) {
  XFrontApplication front(server_);
  const auto terminal = front.current();
  ASSERT_TRUE(terminal);
  EXPECT_EQ(terminal->bundleIdentifier, "xterm");
  EXPECT_FALSE(terminal->isThisProcess);
  {
    const Program manager({"xterm", "-class", "Thunar", "-T", "files"});
    ASSERT_TRUE(eventuallyActive("files"));
    const auto files = front.current();
    ASSERT_TRUE(files);
    EXPECT_EQ(files->bundleIdentifier, fileManagerBundle);
    front.activate(*terminal);
    EXPECT_TRUE(eventuallyActive("other"));
    EXPECT_TRUE(front.isRunning(*files));
  }
  EXPECT_TRUE(eventuallyActive("other"));
  EXPECT_TRUE(front.isRunning(*terminal));
}

TEST_F(X11Test, TapsSecondaryPressesInOtherApplications) {
  RawInput input(server_);
  XEventTaps taps(server_, input);
  std::vector<std::uint64_t> flags;
  const auto tap = taps.create(1U << TapEvent::secondaryMouseDown,
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

TEST_F(X11Test, CountsScreensFromTheBottomLeft) {
  const auto screens = XScreens(server_).all();
  ASSERT_EQ(screens.size(), 1U);
  EXPECT_EQ(screens.front().frame, (Rectangle{0, 0, 1600, 1000}));
  EXPECT_EQ(XScreens(server_).main(), screens.front());
}

}  // namespace
}  // namespace tolvane
