#include "bridge/job_control.h"

#include <chrono>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/platform_error.h"
#include "tests/support/bridge_fixture.h"
#include "tests/support/failure_text.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using Paths = std::vector<fs::path>;

const ChannelReply started = Value();
const ChannelReply busy = ChannelError{"busy", "Finish or cancel the current job first.", {}};
constexpr const char* cancelledText = "Cancelled. Your source files are unchanged.";

class JobControlTest : public support::BridgeFixture {
 protected:
  /// Runs one job to its end. @return the last event.
  Value outcomeOf(const Value::Map& arguments) {
    EXPECT_EQ(call("startJob", arguments), started);
    return nextOutcome();
  }

  /// Waits for the end of the job. @return its event.
  Value nextOutcome() {
    const std::size_t before = events_.size();
    runUntil([this, before] {
      return events_.size() > before && events_.back()["type"] == Value("jobCompleted");
    });
    return events_.back();
  }

  /// Holds a job in the worker, before its first check, until released.
  std::promise<void> release_;
  std::shared_future<void> released_ = release_.get_future().share();
};

TEST_F(JobControlTest, HandsTheRequestToTheEngine) {
  call("ready");
  Value seen;
  runner_ = [&seen](const ConversionEngine&, const Job& job) -> Paths {
    seen = Value::List{job.action,
                       job.inputs.at(0).string(),
                       job.inputs.at(1).string(),
                       job.destination ? Value(job.destination->string()) : Value(),
                       job.options};
    return {};
  };
  Value::Map arguments = jobArguments("1");
  outcomeOf(arguments);
  EXPECT_EQ(seen, Value(Value::List{"universal", "/in/a", "/in/b", nullptr, Value::Map{}}));

  const Value::Map options = {{"quality", 0.5}};
  arguments["destination"] = "/out";
  arguments["options"] = options;
  outcomeOf(arguments);
  EXPECT_EQ(seen, Value(Value::List{"universal", "/in/a", "/in/b", "/out", options}));

  arguments["destination"] = 1;
  arguments["options"] = "none";
  outcomeOf(arguments);
  EXPECT_EQ(seen, Value(Value::List{"universal", "/in/a", "/in/b", nullptr, Value::Map{}}));
}

TEST_F(JobControlTest, ReportsProgressInOrderAndThenTheOutputs) {
  call("ready");
  runner_ = [](const ConversionEngine&, const Job& job) -> Paths {
    for (int completed = 1; completed <= 3; ++completed) {
      job.progress(completed, 3);
    }
    return {"/out/b", "/out/a"};
  };
  const Value outcome = outcomeOf(jobArguments("seven"));
  ASSERT_EQ(events_.size(), 4U);
  for (int completed = 1; completed <= 3; ++completed) {
    EXPECT_EQ(events_.at(static_cast<std::size_t>(completed - 1)),
              Value(Value::Map{{"type", "jobProgress"},
                               {"version", 1},
                               {"id", "seven"},
                               {"completed", completed},
                               {"total", 3}}));
  }
  Value::Map rest = *outcome.map();
  EXPECT_TRUE(std::holds_alternative<double>(rest.at("seconds").variant()));
  rest.erase("seconds");
  EXPECT_EQ(rest,
            (Value::Map{{"type", "jobCompleted"},
                        {"version", 1},
                        {"id", "seven"},
                        {"status", "completed"},
                        {"outputs", Value::List{"/out/b", "/out/a"}}}));
}

TEST_F(JobControlTest, RefusesASecondJobAndLeavesTheFirstAlone) {
  call("ready");
  runner_ = [this](const ConversionEngine&, const Job& job) -> Paths {
    released_.wait();
    job.token.check();
    return {};
  };
  EXPECT_EQ(call("startJob", jobArguments("first")), started);
  EXPECT_EQ(call("startJob", jobArguments("second")), busy);
  EXPECT_EQ(call("startJob"), busy);
  release_.set_value();
  nextOutcome();
  ASSERT_EQ(events_.size(), 1U);
  EXPECT_EQ(events_[0]["id"], Value("first"));
  EXPECT_EQ(events_[0]["status"], Value("completed"));
}

TEST_F(JobControlTest, CancelsAJobBeforeItsFirstCheck) {
  call("ready");
  runner_ = [this](const ConversionEngine&, const Job& job) -> Paths {
    released_.wait();
    job.token.check();
    return {"/out/a"};
  };
  call("startJob", jobArguments("1"));
  EXPECT_EQ(call("cancelJob"), ChannelReply(Value()));
  EXPECT_EQ(call("startJob", jobArguments("2")), busy);
  release_.set_value();
  nextOutcome();
  call("cancelJob");
  finishEverything();
  ASSERT_EQ(events_.size(), 1U);
  EXPECT_EQ(events_[0]["status"], Value("cancelled"));
  EXPECT_EQ(events_[0]["outputs"], Value(Value::List{}));
  EXPECT_EQ(events_[0]["error"], Value(cancelledText));
}

TEST_F(JobControlTest, TellsFailureFromCancellationByTheErrorAlone) {
  call("ready");
  struct Case {
    std::function<void()> fail;
    const char* status;
    const char* error;
  };
  const std::vector<Case> cases = {
      {[] { throw ConversionFailure::message("No."); }, "failed", "No."},
      {[] { throw ConversionFailure::message(cancelledText); }, "failed", cancelledText},
      {[] { throw PlatformError("disk full"); }, "failed", "disk full"},
      {[] { throw ConversionFailure::cancelled(); }, "cancelled", cancelledText}};
  for (const Case& c : cases) {
    for (const bool isTokenSet : {false, true}) {
      runner_ = [&](const ConversionEngine&, const Job& job) -> Paths {
        while (isTokenSet && !job.token.isCancelled()) {
          std::this_thread::yield();
        }
        c.fail();
        return {"/out/a"};
      };
      call("startJob", jobArguments("1"));
      if (isTokenSet) {
        call("cancelJob");
      }
      const Value outcome = nextOutcome();
      EXPECT_EQ(outcome["status"], Value(c.status));
      EXPECT_EQ(outcome["error"], Value(c.error));
      EXPECT_EQ(outcome["outputs"], Value(Value::List{}));
    }
  }
}

TEST_F(JobControlTest, AppliesAnOutcomeThatNobodyHears) {
  runner_ = [](const ConversionEngine&, const Job& job) -> Paths {
    job.progress(1, 1);
    return {};
  };
  EXPECT_EQ(call("startJob", jobArguments("1")), started);
  finishEverything();
  EXPECT_TRUE(events_.empty());
  EXPECT_EQ(call("startJob", jobArguments("2")), started);
}

TEST_F(JobControlTest, QuitsAfterTheOutcomeOfTheCancelledJob) {
  call("ready");
  runner_ = [](const ConversionEngine&, const Job& job) -> Paths {
    while (true) {
      job.token.check();
      std::this_thread::yield();
    }
  };
  call("startJob", jobArguments("1"));
  std::vector<std::string> order;
  client_.onEvent(
      [&order](const Value::Map& event) { order.push_back(*valueAt(event, "status").text()); });
  const std::thread::id here = std::this_thread::get_id();
  EXPECT_TRUE(bridge_->prepareToQuit([&] {
    order.emplace_back(std::this_thread::get_id() == here ? "done" : "done elsewhere");
    loop_.quit();
  }));
  EXPECT_TRUE(order.empty());
  loop_.run();
  EXPECT_EQ(order, (std::vector<std::string>{"cancelled", "done"}));
}

TEST_F(JobControlTest, HasNothingToPrepareWithoutAJob) {
  bool isUsed = false;
  EXPECT_FALSE(bridge_->prepareToQuit([&isUsed] { isUsed = true; }));
  finishEverything();
  EXPECT_FALSE(isUsed);
}

TEST_F(JobControlTest, EndsTheJobWhenTheBridgeGoes) {
  call("ready");
  bool isStopped = false;
  runner_ = [&isStopped](const ConversionEngine&, const Job& job) -> Paths {
    job.progress(0, 1);
    while (!job.token.isCancelled()) {
      std::this_thread::yield();
    }
    isStopped = true;
    job.token.check();
    return {};
  };
  call("startJob", jobArguments("1"));
  runUntil([this] { return !events_.empty(); });
  bridge_.reset();
  EXPECT_TRUE(isStopped);
  loop_.post([this] { loop_.quit(); });
  loop_.run();
  EXPECT_EQ(events_.size(), 1U);
}

TEST_F(JobControlTest, AnswersAFailedPreviewInTheEnginesWords) {
  const std::string text =
      support::failureText([] { return ConversionEngine().thumbnail("/none.pdf", 0); });
  EXPECT_EQ(call("thumbnail", Value::Map{{"path", "/none.pdf"}, {"index", 0}}),
            ChannelReply(ChannelError{"preview", text, {}}));
}

TEST_F(JobControlTest, AnswersAPreviewAsBytes) {
  const support::TemporaryFolder folder;
  support::PdfBuilder().page({.text = "one"}).page({.text = "two"}).write(folder / "two.pdf");
  const std::string path = folder / "two.pdf";
  const ChannelReply reply = call("thumbnail", Value::Map{{"path", path}, {"index", 1}});
  EXPECT_EQ(reply, ChannelReply(ConversionEngine().thumbnail(path, 1)));
  const Bytes png = *std::get<Value>(reply).bytes();
  EXPECT_EQ(std::string(png.begin() + 1, png.begin() + 4), "PNG");
}

TEST(JobSecondsTest, LeaveOutTheTimeInTheQueue) {
  EventLoop loop;
  MessengerPair messengers;
  EventStream events(messengers.host());
  events.open();
  const ConversionEngine engine(
      [](const ConversionEngine&, const Job&) { return std::vector<fs::path>(); });
  std::promise<void> release;
  SerialQueue worker("worker");
  const auto jobs = std::make_shared<JobControl>(engine, worker, loop, events);
  MethodTable table;
  jobs->addMethods(table);
  double seconds = -1;
  ChannelClient(messengers.interface()).onEvent([&](const Value::Map& event) {
    seconds = valueAt(event, "seconds").number().value();
    loop.quit();
  });

  worker.post([&release] { release.get_future().wait(); });
  table.dispatch(
      {"startJob", Value::Map{{"id", "1"}, {"action", "universal"}, {"inputs", Value::List{"/a"}}}},
      MethodReply([](const Bytes&) {}));
  constexpr std::chrono::milliseconds wait(300);
  std::this_thread::sleep_for(wait);
  release.set_value();
  loop.run();
  EXPECT_GE(seconds, 0);
  EXPECT_LT(seconds, std::chrono::duration<double>(wait).count());
}

}  // namespace
}  // namespace tolvane
