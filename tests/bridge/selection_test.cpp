#include <algorithm>
#include <chrono>
#include <poll.h>
#include <sys/inotify.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/primitives/limits.h"
#include "platform/files/descriptor.h"
#include "tests/support/bridge_fixture.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class SelectionTest : public support::BridgeFixture {
 protected:
  void SetUp() override {
    call("ready");
    folder_.write("a.srt", "1\n00:00:01,000 --> 00:00:02,000\nHello\n");
    folder_.write("b.csv", "a,b\n");
    folder_.write("c.bin", "unknown");
  }

  /// Takes files in and waits until `count` events have come.
  void select(const std::vector<std::string>& names, std::size_t count = 2) {
    std::vector<std::filesystem::path> files(names.size());
    std::transform(names.begin(), names.end(), files.begin(), [this](const std::string& name) {
      return folder_ / name;
    });
    bridge_->select(files);
    runUntil([this, count] { return events_.size() >= count; });
  }

  static std::vector<std::string> namesOf(const Value& event) {
    std::vector<std::string> names;
    for (const Value& file : *event["files"].list()) {
      names.push_back(*file["name"].text());
    }
    return names;
  }

  support::TemporaryFolder folder_;
};

TEST_F(SelectionTest, ClearsThenPublishesFilesAndOffers) {
  select({"a.srt"});
  ASSERT_THAT(events_, SizeIs(2));
  EXPECT_EQ(events_[0],
            Value(Value::Map{{"type", "selectionResolved"},
                             {"version", 1},
                             {"files", Value::List()},
                             {"message", "Choose or drop a file to get started."},
                             {"formats", Value::List()},
                             {"tools", Value::List()}}));
  EXPECT_THAT(namesOf(events_[1]), ElementsAre("a.srt"));
  EXPECT_EQ(events_[1]["files"].list()->front()["detail"], Value("SRT · subtitle"));
  EXPECT_EQ(events_[1]["message"], Value(""));
  EXPECT_EQ((*events_[1]["formats"].list())[1]["id"], Value("convert.vtt"));
  EXPECT_THAT(*events_[1]["tools"].list(), IsEmpty());
  const Value ready = std::get<Value>(call("ready"));
  EXPECT_EQ(ready["files"], events_[1]["files"]);
  EXPECT_EQ(ready["formats"], events_[1]["formats"]);
}

TEST_F(SelectionTest, CountsFailuresAndKeepsTheFirst) {
  select({"c.bin", "a.srt", "missing.srt"});
  EXPECT_THAT(namesOf(events_[1]), ElementsAre("a.srt"));
  EXPECT_EQ(events_[1]["message"],
            Value("2 file(s) unavailable. This file type is not supported. Choose a document, "
                  "image, media file, subtitle or archive."));
}

TEST_F(SelectionTest, RefusesMoreThanAHundredFilesAsAWhole) {
  select(std::vector<std::string>(101, "a.srt"));
  EXPECT_EQ(events_[1],
            Value(Value::Map{{"type", "selectionResolved"},
                             {"version", 1},
                             {"files", Value::List()},
                             {"message", "Select at most 100 files."}}));
  finishEverything();
  EXPECT_THAT(events_, SizeIs(2));
  select(std::vector<std::string>(100, "a.srt"), 4);
  EXPECT_THAT(*events_[3]["files"].list(), SizeIs(100));
}

TEST_F(SelectionTest, DropsWhatANewerIntakeOvertook) {
  bridge_->select({folder_ / "a.srt"});
  bridge_->select({folder_ / "b.csv"});
  finishEverything();
  ASSERT_THAT(events_, SizeIs(3));
  EXPECT_THAT(namesOf(events_[2]), ElementsAre("b.csv"));
}

/// Sees that a file is opened.
class OpeningWatch {
 public:
  explicit OpeningWatch(const std::filesystem::path& file) : notices_(::inotify_init1(IN_CLOEXEC)) {
    EXPECT_GE(::inotify_add_watch(notices_.number(), file.c_str(), IN_OPEN), 0);
  }
  /// @return whether it was opened, at the latest when the time is over.
  [[nodiscard]] bool hasSeenOne(std::chrono::milliseconds wait) const {
    pollfd notices = {notices_.number(), POLLIN, 0};
    return ::poll(&notices, 1, static_cast<int>(wait.count())) == 1;
  }

 private:
  Descriptor notices_;
};

/// A hundred files that take long enough to inspect for something to happen meanwhile.
class LongInspectionTest : public SelectionTest {
 protected:
  void selectMany() {
    std::vector<std::filesystem::path> files(Limits::maxInputFiles - 1, first_);
    files.push_back(last_);
    bridge_->select(files);
    ASSERT_TRUE(firstOpening_.hasSeenOne(std::chrono::seconds(10)));
  }
  [[nodiscard]] bool isLastOpened() const {
    return lastOpening_.hasSeenOne(std::chrono::milliseconds(0));
  }

 private:
  /// Letters of several bytes take the longest.
  static std::string longTable() {
    std::string table;
    while (table.size() < Limits::textSample) {
      table += "é,\n";
    }
    return table;
  }

  std::filesystem::path first_ = folder_.write("first.csv", longTable());
  std::filesystem::path last_ = folder_.write("last.csv", "a,b\n");
  OpeningWatch firstOpening_{first_};
  OpeningWatch lastOpening_{last_};
};

TEST_F(LongInspectionTest, EndsWhenANewerIntakeBegins) {
  selectMany();
  bridge_->select({folder_ / "a.srt"});
  finishEverything();
  EXPECT_FALSE(isLastOpened());
  ASSERT_THAT(events_, SizeIs(3));
  EXPECT_THAT(namesOf(events_[2]), ElementsAre("a.srt"));
}

TEST_F(LongInspectionTest, EndsWhenTheBridgeGoes) {
  selectMany();
  bridge_.reset();
  EXPECT_FALSE(isLastOpened());
}

TEST_F(SelectionTest, ShowsTheGivenMessageWhenThereIsNothingToInspect) {
  bridge_->select({}, "Nothing is selected.");
  finishEverything();
  ASSERT_THAT(events_, SizeIs(1));
  EXPECT_EQ(events_[0]["message"], Value("Nothing is selected."));
}

TEST_F(SelectionTest, TakesInTheFilesOfAConfirmedPanelBeforeThePaletteIsShown) {
  client_.call("chooseFiles", {}, [](const ChannelReply&) {});
  record_.calls.clear();
  record_.filesClosed(std::vector<std::filesystem::path>{folder_ / "a.srt"});
  EXPECT_EQ(record_.calls, (std::vector<std::string>{"resume", "show"}));
  finishEverything();
  EXPECT_THAT(namesOf(events_.back()), ElementsAre("a.srt"));
}

TEST_F(SelectionTest, IsRefusedWhileAJobRuns) {
  runner_ = [](const ConversionEngine&, const Job&) {
    return std::vector<std::filesystem::path>();
  };
  call("startJob", jobArguments("1"));
  bridge_->select({folder_ / "a.srt"});
  finishEverything();
  ASSERT_THAT(events_, SizeIs(1));
  EXPECT_EQ(events_[0]["type"], Value("jobCompleted"));
}

}  // namespace
}  // namespace tolvane
