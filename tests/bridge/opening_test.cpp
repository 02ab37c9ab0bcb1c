#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/bridge_fixture.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class OpeningTest : public support::BridgeFixture {
 protected:
  void SetUp() override {
    call("ready");
    record_.calls.clear();
  }

  std::vector<std::string> eventTypes() const {
    std::vector<std::string> types;
    for (const Value& event : events_) {
      types.push_back(*event["type"].text());
    }
    return types;
  }

  support::TemporaryFolder folder_;
  const std::filesystem::path file_ = folder_.write("a.csv", "a,b\n");
};

TEST_F(OpeningTest, TakesInTheFinderSelectionNextToItsFile) {
  record_.finderFiles = {file_};
  record_.finderFrame = Rectangle{70, 80, 64, 64};
  record_.shortcutPressed();
  EXPECT_THAT(record_.calls, ElementsAre("resolve", "begin at 70", "show"));
  EXPECT_THAT(eventTypes(), ElementsAre("selectionResolved", "openPalette"));
  EXPECT_EQ(events_[0]["message"], Value("Choose or drop a file to get started."));
  EXPECT_EQ(events_[1],
            Value(Value::Map{{"type", "openPalette"}, {"version", 1}, {"reduceMotion", true}}));
  finishEverything();
  EXPECT_EQ((*events_.back()["files"].list()).front()["name"], Value("a.csv"));
}

TEST_F(OpeningTest, ShowsItsMessageWithAnEmptySelection) {
  bridge_->open(Bridge::Intake::finderSelection, "A message.");
  EXPECT_THAT(record_.calls, ElementsAre("resolve", "begin", "show"));
  EXPECT_EQ(events_[0]["message"], Value("A message."));
}

TEST_F(OpeningTest, ExplainsASelectionThatCannotBeRead) {
  record_.finderFailure = "Finder selection is unavailable.";
  record_.finderFrame = Rectangle{70, 80, 64, 64};
  bridge_->open(Bridge::Intake::finderSelection);
  EXPECT_THAT(record_.calls, ElementsAre("resolve", "begin", "show"));
  EXPECT_THAT(eventTypes(), ElementsAre("selectionResolved", "openPalette"));
  EXPECT_EQ(events_[0]["message"], Value("Finder selection is unavailable."));
}

TEST_F(OpeningTest, AsksForTheFileAfterTheGesture) {
  record_.finderFiles = {file_};
  record_.gestureMade();
  finishEverything();
  EXPECT_THAT(record_.calls, ElementsAre("begin", "show"));
  EXPECT_THAT(eventTypes(), ElementsAre("selectionResolved", "openPalette"));
  EXPECT_EQ(events_[0]["message"],
            Value("The clicked file cannot be verified safely. Drop or choose the file to confirm "
                  "it."));
}

TEST_F(OpeningTest, TakesInFilesThatWereHandedOver) {
  bridge_->open(std::vector{file_});
  EXPECT_THAT(record_.calls, ElementsAre("begin", "show"));
  finishEverything();
  EXPECT_THAT(eventTypes(), ElementsAre("selectionResolved", "openPalette", "selectionResolved"));
}

TEST_F(OpeningTest, IsEmptyWhenNoFilesWereHandedOver) {
  record_.finderFiles = {file_};
  bridge_->open(Bridge::Files());
  EXPECT_THAT(record_.calls, ElementsAre("begin", "show"));
  finishEverything();
  EXPECT_THAT(eventTypes(), ElementsAre("selectionResolved", "openPalette"));
}

TEST_F(OpeningTest, TakesInDroppedFilesWithoutOpening) {
  record_.filesDropped({file_});
  finishEverything();
  EXPECT_THAT(record_.calls, IsEmpty());
  EXPECT_THAT(eventTypes(), ElementsAre("selectionResolved", "selectionResolved"));
}

TEST_F(OpeningTest, OnlyShowsThePaletteWhileAJobRuns) {
  runner_ = [](const ConversionEngine&, const Job&) {
    return std::vector<std::filesystem::path>();
  };
  call("startJob", jobArguments("1"));
  record_.shortcutPressed();
  record_.gestureMade();
  bridge_->open(std::vector{file_});
  EXPECT_THAT(record_.calls, ElementsAre("show", "show", "show"));
  finishEverything();
  EXPECT_THAT(eventTypes(),
              ElementsAre("openPalette", "openPalette", "openPalette", "jobCompleted"));
}

TEST_F(OpeningTest, EndsWithTheBridge) {
  bridge_.reset();
  record_.shortcutPressed();
  record_.gestureMade();
  record_.filesDropped({file_});
  record_.settingsDismissed();
  EXPECT_THAT(record_.calls, IsEmpty());
}

}  // namespace
}  // namespace tolvane
