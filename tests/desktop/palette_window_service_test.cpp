#include "desktop/palette_window_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/desktop_fakes.h"

namespace tolvane {
namespace {

using support::Calls;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const Screen primary{{0, 0, 1000, 800}, {0, 50, 1000, 720}};
const Screen second{{1000, 0, 1200, 900}, {1000, 0, 1200, 900}};
const RunningApplication finder{.bundleIdentifier = "com.apple.finder"};
const RunningApplication editor{.bundleIdentifier = "editor"};
const RunningApplication ourselves{.bundleIdentifier = "tolvane", .isThisProcess = true};

class PaletteWindowTest : public testing::Test {
 protected:
  PaletteWindowTest() {
    screens_.screens = {primary, second};
    screens_.focused = primary;
  }

  void open(Point pointer, const std::optional<Rectangle>& fileFrame = {}) {
    pointer_.at = pointer;
    palette_->beginInvocation(fileFrame);
    palette_->show();
  }

  /// A wheel of six actions around (500, 400).
  void openWheel() {
    palette_->present({"home", true, 6});
    open({500, 400});
    calls_.clear();
  }

  void press(Point location, PointerTarget target = PointerTarget::otherApplication) {
    pointer_.press({location, target});
  }
  void move(Point location) { pointer_.move({location, PointerTarget::otherApplication}); }

  Calls calls_;
  support::FakePanel panel_{calls_};
  support::FakeSettingsWindow settings_{calls_};
  support::FakeContent content_{calls_, panel_, settings_};
  support::FakeDropView dropView_;
  support::FakeScreens screens_;
  support::FakePointer pointer_;
  support::FakeFrontApplication front_{calls_};
  support::FakePermissions permissions_;
  std::optional<PaletteWindowService> palette_{
      std::in_place,
      PaletteWindowService::Surroundings{
          panel_, settings_, content_, dropView_, screens_, pointer_, front_, permissions_}};
};

const Point onWedge{500, 550};
const Point onGap{500 + 75, 400 + 129.9};  // 30 degrees from straight up, 150 from the middle
const Point onCorner{271, 171};            // of the panel, outside the wheel
const Point outside{200, 400};

TEST_F(PaletteWindowTest, IsHiddenAtFirst) {
  EXPECT_FALSE(panel_.isVisible());
  EXPECT_EQ(panel_.frame(), (Rectangle{0, 0, 360, 270}));
  EXPECT_EQ(settings_.size, (Size{460, 720}));
  EXPECT_THAT(calls_, IsEmpty());
}

TEST_F(PaletteWindowTest, FadesInOnceAndThenStaysOpaque) {
  open({400, 500});
  EXPECT_THAT(calls_, ElementsAre("opacity 0", "panel key", "fade in 160"));
  calls_.clear();
  palette_->show();
  EXPECT_THAT(calls_, ElementsAre("opacity 1", "panel key"));
}

TEST_F(PaletteWindowTest, AppearsAtOnceWhenMotionIsReduced) {
  permissions_.reduceMotion = true;
  open({400, 500});
  EXPECT_THAT(calls_, ElementsAre("opacity 1", "panel key"));
}

TEST_F(PaletteWindowTest, TakesTheScreenOfTheFileElseOfThePointer) {
  open({400, 500});
  EXPECT_EQ(panel_.frame(), (Rectangle{414, 254, 360, 270}));
  open({1000, 880});  // the second screen's left edge is its own
  EXPECT_EQ(panel_.frame(), (Rectangle{1014, 618, 360, 270}));
  open({400, 500}, Rectangle{1500, 500, 60, 60});
  EXPECT_EQ(panel_.frame(), (Rectangle{1572, 302, 360, 270}));
  screens_.focused = second;
  open({-10, 500});  // on no screen
  EXPECT_EQ(panel_.frame(), (Rectangle{1012, 254, 360, 270}));
  screens_.screens.clear();
  screens_.focused.reset();
  open({2000, 10});
  EXPECT_EQ(panel_.frame(), (Rectangle{628, 12, 360, 270}));
}

struct StageCase {
  const char* name;
  bool hasFiles;
  Size size;
  bool isWheel;
};
void PrintTo(const StageCase& c, std::ostream* out) {
  *out << c.name << (c.hasFiles ? " with files" : "");
}

class PaletteStageTest : public PaletteWindowTest, public testing::WithParamInterface<StageCase> {};

TEST_P(PaletteStageTest, ResizesAndReshapesAPaletteThatIsUp) {
  const auto& [name, hasFiles, size, isWheel] = GetParam();
  palette_->present({name, hasFiles, 6});
  EXPECT_FALSE(panel_.isVisible());
  open({500, 400});
  const Rectangle frame = panel_.frame();
  EXPECT_EQ((Size{frame.width, frame.height}), size);
  EXPECT_EQ(content_.shape.contains({size.width / 2, size.height / 2}), !isWheel);
  EXPECT_EQ(
      content_.freeParts,
      isWheel ? ContentView::FreeParts::letPointerThrough : ContentView::FreeParts::takePointer);
  EXPECT_FALSE(content_.shape.contains({1, 1}));  // the corner is round in either case

  palette_->present({"editor", false, 0});
  EXPECT_EQ(panel_.frame().height, 560);
  palette_->present({name, hasFiles, 6});
  EXPECT_EQ(panel_.frame(), frame);
}

INSTANTIATE_TEST_SUITE_P(Stages,
                         PaletteStageTest,
                         testing::Values(StageCase{"home", true, {460, 460}, true},
                                         StageCase{"home", false, {320, 300}, false},
                                         StageCase{"editor", true, {440, 560}, false},
                                         StageCase{"finished", true, {380, 410}, false},
                                         StageCase{"running", true, {380, 510}, false},
                                         StageCase{"", false, {380, 510}, false}));

struct PressCase {
  const char* label;
  bool isWheel;
  Point location;
  PointerTarget target;
  bool isDismissed;
};
void PrintTo(const PressCase& c, std::ostream* out) {
  *out << c.label;
}

class PalettePressTest : public PaletteWindowTest, public testing::WithParamInterface<PressCase> {};

TEST_P(PalettePressTest, DismissesUnlessItIsOnThePalette) {
  front_.front = finder;
  openWheel();
  if (!GetParam().isWheel) {
    palette_->present({"finished", false, 0});  // (514, 62, 380, 410)
  }
  calls_.clear();
  palette_->suspendDismissal();
  press(GetParam().location, GetParam().target);
  EXPECT_TRUE(panel_.isVisible());
  palette_->resumeDismissal();
  press(GetParam().location, GetParam().target);
  EXPECT_EQ(!panel_.isVisible(), GetParam().isDismissed);
  EXPECT_EQ(calls_, GetParam().isDismissed ? Calls{"panel out"} : Calls{});
}

INSTANTIATE_TEST_SUITE_P(
    Places,
    PalettePressTest,
    testing::Values(
        PressCase{"elsewhere", true, outside, PointerTarget::otherApplication, true},
        PressCase{"on a wedge", true, onWedge, PointerTarget::palettePanel, false},
        PressCase{"seen elsewhere as well", true, onWedge, PointerTarget::otherApplication, false},
        PressCase{"on a gap", true, onGap, PointerTarget::otherApplication, true},
        PressCase{"on a gap of ours", true, onGap, PointerTarget::palettePanel, true},
        PressCase{"beside the wheel", true, onCorner, PointerTarget::otherApplication, true},
        PressCase{"own window", true, onWedge, PointerTarget::otherOwnWindow, true},
        PressCase{"corner", false, {514.5, 62.5}, PointerTarget::palettePanel, false},
        PressCase{"cut corner", false, {514.5, 62.5}, PointerTarget::otherApplication, true},
        PressCase{
            "below another window", false, {600, 100}, PointerTarget::otherApplication, false},
        PressCase{"right edge", false, {894, 100}, PointerTarget::otherApplication, true}));

TEST_F(PaletteWindowTest, LetsClicksThroughWhereTheWheelHasNothing) {
  openWheel();
  EXPECT_EQ(panel_.mouseEvents, MouseEvents::ignored);  // the pointer is in the empty middle
  move(onWedge);
  EXPECT_EQ(panel_.mouseEvents, MouseEvents::accepted);
  move(onGap);
  EXPECT_EQ(panel_.mouseEvents, MouseEvents::ignored);
  palette_->suspendDismissal();
  move(onWedge);
  EXPECT_EQ(panel_.mouseEvents, MouseEvents::ignored);
  palette_->resumeDismissal();
  press(outside);
  EXPECT_EQ(panel_.mouseEvents, MouseEvents::accepted);
  move(onGap);  // not visible any more
  EXPECT_EQ(panel_.mouseEvents, MouseEvents::accepted);
}

TEST_F(PaletteWindowTest, TakesAllClicksWhenItIsNoWheel) {
  open({400, 500});
  move({10, 10});
  EXPECT_EQ(panel_.mouseEvents, MouseEvents::accepted);
}

TEST_F(PaletteWindowTest, GivesTheFocusBackToTheApplicationBefore) {
  front_.front = editor;
  open({400, 500});
  front_.front = ourselves;
  open({410, 500});
  calls_.clear();
  panel_.escape();
  EXPECT_THAT(calls_, ElementsAre("panel out", "activate editor"));
  calls_.clear();
  front_.terminated = "editor";
  palette_->hide();
  EXPECT_THAT(calls_, ElementsAre("panel out"));
  front_.front.reset();
  front_.terminated.clear();
  open({400, 500});
  calls_.clear();
  palette_->hide();
  EXPECT_THAT(calls_, ElementsAre("panel out"));
}

TEST_F(PaletteWindowTest, ShowsTheSettingsInTheirOwnWindow) {
  openWheel();
  palette_->present({"settings", true, 6});
  EXPECT_THAT(calls_, ElementsAre("panel out", "content to settings", "settings key"));
  EXPECT_EQ(panel_.mouseEvents, MouseEvents::accepted);
  EXPECT_TRUE(content_.shape.contains({230, 719}));  // reshaped to the window
  palette_->present({"settings", true, 6});
  EXPECT_EQ(calls_.back(), "settings key");
  EXPECT_EQ(calls_.size(), 4U);
}

TEST_F(PaletteWindowTest, ComesBackWhenTheSettingsAreDismissed) {
  palette_->onSettingsDismissed([this] { calls_.emplace_back("dismissed"); });
  palette_->present({"settings", false, 0});
  calls_.clear();
  settings_.escape();
  EXPECT_THAT(
      calls_,
      ElementsAre("content to panel", "dismissed", "opacity 0", "panel key", "fade in 160"));
  EXPECT_FALSE(settings_.isVisible());
}

TEST_F(PaletteWindowTest, ComesBackFromTheSettingsByAnotherStage) {
  palette_->present({"settings", false, 0});
  calls_.clear();
  palette_->present({"editor", false, 0});
  EXPECT_THAT(calls_, ElementsAre("content to panel", "opacity 0", "panel key", "fade in 160"));
  EXPECT_FALSE(settings_.isVisible());
  EXPECT_EQ(panel_.frame().width, 440);
}

TEST_F(PaletteWindowTest, HandsDroppedFilesOnAndForgetsItsHandlersAtTheEnd) {
  std::vector<std::filesystem::path> dropped;
  palette_->onFiles([&dropped](const Palette::Files& files) { dropped = files; });
  dropView_.dropped({"/a", "/b"});
  EXPECT_THAT(dropped, ElementsAre("/a", "/b"));
  palette_.reset();
  EXPECT_FALSE(dropView_.dropped || panel_.escape || settings_.escape || pointer_.press ||
               pointer_.move);
}

}  // namespace
}  // namespace tolvane
