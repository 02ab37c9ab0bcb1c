#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
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

  /// The size of each result that a job leaves, by its name; they are removed.
  std::map<std::string, std::uintmax_t> takeResults() {
    std::map<std::string, std::uintmax_t> sizes;
    for (const std::string& name : resultNames()) {
      sizes[name] = std::filesystem::file_size(results() / name);
      std::filesystem::remove(results() / name);
    }
    return sizes;
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

TEST_F(LimitsTest, AFewBytesThatBecomeGigabytesAreRefusedBeforeTheyFillTheDisk) {
  const std::string making =
      "ffmpeg -v error -f lavfi -i anullsrc=r=96000:cl=7.1 -t 750 -compression_level 0 " +
      path("silence.flac");
  ASSERT_EQ(std::system(making.c_str()), 0);
  EXPECT_EQ(run({"convert", path("silence.flac"), "--to", "wav", "--out", results().string()}), 1);
  EXPECT_EQ(err(), "The output exceeds the 1 GB safety limit.\n");
  EXPECT_THAT(resultNames(), IsEmpty());
}

#ifndef __SANITIZE_ADDRESS__  // which reserves more than any of these
TEST_F(LimitsTest, TooLittleMemoryEndsInASentenceAndLeavesNothingUnfinished) {
  int failures = 0;
  constexpr int step = 40'000;  // kilobytes; from where the program can start to where it can work
  for (const char* job : {"pdf_png a.pdf", "merge_pdf a.pdf a.pdf", "resize a.png"}) {
    ASSERT_EQ(runLimited("-v unlimited", job), 0) << err();
    const auto whole = takeResults();
    for (int limit = 80'000; limit <= 600'000; limit += step) {
      SCOPED_TRACE(job + (" -v " + std::to_string(limit)));
      const int status = runLimited("-v " + std::to_string(limit), job);
      const auto left = takeResults();
      if (status != 0) {
        ++failures;
        EXPECT_EQ(status, 1);
        EXPECT_THAT(err(), EndsWith(".\n"));
      }
      // A library may still give up when the results are in their place; they stay, and are whole.
      EXPECT_TRUE(left == whole || (status != 0 && left.empty())) << err();
    }
  }
  EXPECT_GT(failures, 0);
}
#endif

}  // namespace
}  // namespace tolvane
