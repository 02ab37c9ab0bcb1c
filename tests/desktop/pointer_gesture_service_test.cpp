#include "desktop/pointer_gesture_service.h"

#include <gtest/gtest.h>

#include "tests/support/desktop_fakes.h"

namespace tolvane {
namespace {

class FakeTaps final : public EventTaps {
 public:
  [[nodiscard]] std::unique_ptr<EventTap> create(
      std::uint64_t mask, std::function<void(const TapEvent& event)> handler) override {
    EXPECT_EQ(mask, 1U << 3U);
    if (!isAvailable) {
      return nullptr;
    }
    ++created;
    send = std::move(handler);
    return std::make_unique<Tap>(*this);
  }

  bool isAvailable = true;
  int created = 0;
  int alive = 0;
  int enabled = 0;
  std::function<void(const TapEvent& event)> send;

 private:
  class Tap final : public EventTap {
   public:
    explicit Tap(FakeTaps& taps) : taps_(taps) { ++taps_.alive; }
    ~Tap() override { --taps_.alive; }
    Tap(const Tap&) = delete;
    Tap& operator=(const Tap&) = delete;
    void enable() override { ++taps_.enabled; }

   private:
    FakeTaps& taps_;
  };
};

class FakeWakeNotices final : public WakeNotices {
 public:
  void onWake(std::function<void()> woken) override { wake = std::move(woken); }

  std::function<void()> wake;
};

const TapEvent shiftClick{TapEvent::secondaryMouseDown, 0x20000};

class GestureTest : public testing::Test {
 protected:
  GestureTest() {
    permissions_.canListen = true;
    front_.front = RunningApplication{.bundleIdentifier = "com.apple.finder"};
    gesture_->onTrigger([this] { ++triggers_; });
  }

  void expectOff(const char* status) const {
    EXPECT_FALSE(gesture_->isEnabled());
    EXPECT_EQ(gesture_->status(), status);
    EXPECT_EQ(taps_.alive, 0);
  }

  support::Calls calls_;
  FakeTaps taps_;
  support::FakePermissions permissions_;
  support::FakeFrontApplication front_{calls_};
  FakeWakeNotices wakeNotices_;
  support::HeldQueue main_;
  int triggers_ = 0;
  std::optional<PointerGestureService> gesture_{
      std::in_place,
      PointerGestureService::Surroundings{taps_, permissions_, front_, wakeNotices_, main_}};
};

TEST_F(GestureTest, GoesOnAndOff) {
  expectOff("Off · keyboard shortcut recommended");
  EXPECT_TRUE(gesture_->setEnabled(true));
  EXPECT_TRUE(gesture_->isEnabled());
  EXPECT_EQ(gesture_->status(),
            "Passive monitoring · clicked file cannot be verified; drop or choose to confirm. "
            "Finder’s menu may also appear.");
  EXPECT_EQ(taps_.enabled, 1);
  EXPECT_EQ(permissions_.inputRequests, 0);
  EXPECT_TRUE(gesture_->setEnabled(false));
  expectOff("Off · keyboard shortcut recommended");
}

TEST_F(GestureTest, StaysOffWithoutPermissionUntilItIsGranted) {
  permissions_.canListen = false;
  EXPECT_FALSE(gesture_->setEnabled(true));
  expectOff(
      "Input Monitoring is required for this optional gesture. Enable it in Settings, then retry.");
  permissions_.grantsListening = true;
  EXPECT_TRUE(gesture_->setEnabled(true));
  EXPECT_EQ(permissions_.inputRequests, 2);
}

TEST_F(GestureTest, StaysOffWhereEventsCannotBeMonitored) {
  gesture_->setEnabled(true);
  taps_.isAvailable = false;
  EXPECT_FALSE(gesture_->setEnabled(true));
  expectOff("Event monitoring unavailable. Use the shortcut or menu bar.");
}

struct EventCase {
  const char* label;
  const char* bundle;
  TapEvent event;
  int triggers;
};
void PrintTo(const EventCase& c, std::ostream* out) {
  *out << c.label;
}

class GestureEventTest : public GestureTest, public testing::WithParamInterface<EventCase> {};

TEST_P(GestureEventTest, IsRecognisedLaterOnTheMainQueue) {
  front_.front->bundleIdentifier = GetParam().bundle;
  gesture_->setEnabled(true);
  taps_.send(GetParam().event);
  EXPECT_EQ(triggers_, 0);
  main_.runAll();
  EXPECT_EQ(triggers_, GetParam().triggers);
}

INSTANTIATE_TEST_SUITE_P(
    Events,
    GestureEventTest,
    testing::Values(EventCase{"gesture", "com.apple.finder", shiftClick, 1},
                    EventCase{"more keys held", "com.apple.finder", {3, 0x120002}, 1},
                    EventCase{"another application", "editor", shiftClick, 0},
                    EventCase{"no shift", "com.apple.finder", {3, 0x40000}, 0},
                    EventCase{"primary button", "com.apple.finder", {1, 0x20000}, 0}));

TEST_F(GestureTest, ListensAgainWhenTheSystemSwitchedTheTapOff) {
  gesture_->setEnabled(true);
  taps_.send({0xFFFFFFFE, 0x20000});
  taps_.send({0xFFFFFFFF, 0x20000});
  EXPECT_EQ(taps_.enabled, 3);
  main_.runAll();
  EXPECT_EQ(triggers_, 0);
}

TEST_F(GestureTest, IsSetUpAnewAfterAWakeWhenItWasOn) {
  wakeNotices_.wake();
  EXPECT_EQ(taps_.created, 0);
  gesture_->setEnabled(true);
  wakeNotices_.wake();
  EXPECT_EQ(taps_.created, 2);
  EXPECT_EQ(taps_.alive, 1);
}

TEST_F(GestureTest, DoesNotTriggerWithoutAFrontApplicationOrAfterItsEnd) {
  gesture_->setEnabled(true);
  taps_.send(shiftClick);
  front_.front.reset();
  taps_.send(shiftClick);
  gesture_.reset();
  main_.runAll();
  EXPECT_EQ(triggers_, 0);
  EXPECT_EQ(taps_.alive, 0);
  EXPECT_FALSE(wakeNotices_.wake);
}

}  // namespace
}  // namespace tolvane
