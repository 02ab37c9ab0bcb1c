#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/program_fixture.h"
#include "tests/support/pictures.h"

namespace tolvane {
namespace {

using ::testing::EndsWith;
using ::testing::IsEmpty;

/// The program below limits of the shell that starts it.
class LimitsTest : public support::ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    constexpr int side = 2000;
    support::writePng(path("a.png"), support::quarters(side, side));
  }

  int runLimited(const std::string& limit, const std::string& job) {
    const std::string script = "ulimit " + limit + "; cd '" + folder_.path().string() +
                               "'; exec '" TOLVANE_PROGRAM "' action " + job + " --out results";
    return run({"-c", script}, "", "/bin/sh");
  }
};

TEST_F(LimitsTest, FilesThatMayNotGrowAreNamedAndLeaveNothing) {
  for (const char* job : {"pdf_png a.pdf", "merge_pdf a.pdf a.pdf", "resize a.png"}) {
    SCOPED_TRACE(job);
    EXPECT_EQ(runLimited("-f 1", job), 1);
    EXPECT_THAT(err(), EndsWith(": File too large.\n"));
    EXPECT_THAT(resultNames(), IsEmpty());
  }
}

#ifndef __SANITIZE_ADDRESS__  // which reserves more than any of these
TEST_F(LimitsTest, TooLittleMemoryEndsInASentenceAndLeavesNothing) {
  int failures = 0;
  int successes = 0;
  constexpr int step = 40'000;  // kilobytes; from where the program can start to where it can work
  for (int limit = 80'000; limit <= 600'000; limit += step) {
    for (const char* job : {"pdf_png a.pdf", "merge_pdf a.pdf a.pdf", "resize a.png"}) {
      SCOPED_TRACE(job + (" -v " + std::to_string(limit)));
      const int status = runLimited("-v " + std::to_string(limit), job);
      if (status == 0) {
        ++successes;
        std::filesystem::remove_all(results());
        std::filesystem::create_directory(results());
      } else {
        ++failures;
        EXPECT_EQ(status, 1);
        EXPECT_THAT(err(), EndsWith(".\n"));
      }
      EXPECT_THAT(resultNames(), IsEmpty());
    }
  }
  EXPECT_GT(failures, 0);
  EXPECT_GT(successes, 0);
}
#endif

}  // namespace
}  // namespace tolvane
