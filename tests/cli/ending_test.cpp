#include <csignal>
#include <string>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/files/descriptor.h"
#include "tests/cli/program_fixture.h"
#include "tests/support/stop_watch.h"
#include "tests/support/stubborn_job.h"

namespace tolvane {
namespace {

using support::eventually;
using ::testing::IsEmpty;

class EndingTest : public support::ProgramTest {
 protected:
  /// A job, for the command line or for the host, that does not notice that it is cancelled.
  void SetUp() override {
    ProgramTest::SetUp();
    support::writeStubbornPdf(path("bomb.pdf"));
  }

  [[nodiscard]] std::vector<std::string> jobWords() const {
    return {"action", "pdf_png", path("bomb.pdf"), "--out", results().string()};
  }
  [[nodiscard]] std::string jobRequest() const {
    return R"({"jsonrpc":"2.0","id":1,"method":"startJob","params":{"id":"j","action":"pdf_png",)"
           R"("inputs":[")" +
           path("bomb.pdf") + R"("],"destination":")" + results().string() + "\"}}\n";
  }

  /// Starts the host with a pipe for its input and writes the job into it.
  /// @return the process; input_ is the other end.
  pid_t startHost() {
    in_ = "pipe";
    EXPECT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    input_ = Descriptor(::open(path("pipe").c_str(), O_RDWR | O_CLOEXEC));
    const pid_t process = start({"host"});
    const std::string request = jobRequest();
    EXPECT_EQ(::write(input_.number(), request.data(), request.size()), ssize_t(request.size()));
    return process;
  }

  void waitUntilItPaints(pid_t process) const {
    ASSERT_TRUE(eventually([this] { return std::filesystem::exists(results()); }));
    ASSERT_TRUE(eventually([this] { return !resultNames().empty(); }));
    ASSERT_TRUE(support::eventuallyPaints(process));
  }

  Descriptor input_;
};

struct Signals {
  const char* label;
  int first;
  int second;
  bool toHost;
};

TEST_F(EndingTest, ComesWithTheSecondSignalWhateverALibraryDoes) {
  for (const Signals& signals : {Signals{"terminate", SIGTERM, SIGTERM, false},
                                 Signals{"terminal closed", SIGHUP, SIGHUP, false},
                                 Signals{"Control-C", SIGINT, SIGINT, false},
                                 Signals{"mixed, to the host", SIGTERM, SIGHUP, true}}) {
    SCOPED_TRACE(signals.label);
    std::filesystem::remove(results());  // the program makes it, and takes it back
    if (signals.toHost) {
      std::filesystem::create_directory(results());
    }
    const pid_t process = signals.toHost ? startHost() : start(jobWords());
    waitUntilItPaints(process);
    ASSERT_TRUE(support::eventuallyTakes(process, signals.first));
    const support::StopWatch watch;
    ::kill(process, signals.second);
    EXPECT_EQ(finish(process), -signals.second);
    EXPECT_LT(watch.seconds(), 10);
    EXPECT_EQ(std::filesystem::exists(results()), signals.toHost);
    EXPECT_TRUE(!signals.toHost || resultNames().empty());
  }
}

TEST_F(EndingTest, ComesSoonAfterTheEndOfTheHostsInput) {
  const pid_t process = startHost();
  waitUntilItPaints(process);
  const support::StopWatch watch;
  input_ = Descriptor();
  EXPECT_EQ(finish(process), 130);
  EXPECT_LT(watch.seconds(), 10);
  EXPECT_THAT(resultNames(), IsEmpty());
}

}  // namespace
}  // namespace tolvane
