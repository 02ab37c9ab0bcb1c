#include "universal/toolchain/engine_limits.h"

#include <cstdint>
#include <filesystem>
#include <sys/resource.h>

#include "tests/support/failure_text.h"
#include "tests/universal/toolchain/toolchain_fixture.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;
using support::failureText;

constexpr int memory = 64;                    // MiB
constexpr std::uint64_t output = 10'000'000;  // bytes

constexpr const char* tooMuchOutput = "The output exceeds the 1 GB safety limit.";

class EngineLimitsTest : public support::ToolchainFixture {
 protected:
  /// The failure of an engine that has little room.
  std::string failureOf(const std::string& script) {
    EngineRun order = engine("greedy", script);
    order.limits = EngineLimits{memory, output};
    return failureText([&] { return run(order); });
  }
};

TEST_F(EngineLimitsTest, MemoryIsBoundedByAllWaysToAskForIt) {
  constexpr const char* needs =
      "greedy needs more than 64 MB of memory for this file. Try a smaller or simpler one.";
  EXPECT_EQ(failureOf("head -c 1G /dev/zero | tail -c 1G 2>/dev/null"), needs);  // saying nothing
  EXPECT_EQ(failureOf("exec dd if=/dev/zero of=x bs=1G"), needs);                // in one piece
}

TEST_F(EngineLimitsTest, OneFileEndsATenthAboveTheLimit) {
  EXPECT_EQ(failureOf("exec head -c 1G /dev/zero > large"), tooMuchOutput);
  EXPECT_LE(fs::file_size(workspace() / "large"), output + output / 10 + (1 << 20));
  EXPECT_EQ(failureOf("trap '' XFSZ; exec head -c 1G /dev/zero > large"), tooMuchOutput);
}

TEST_F(EngineLimitsTest, ALowerLimitOfTheUserStays) {
  rlimit inherited = {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &inherited), 0);
  const rlimit lower = {1 << 20, inherited.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &lower), 0);
  failureOf("exec head -c 1G /dev/zero > large");
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &inherited), 0);
  EXPECT_EQ(fs::file_size(workspace() / "large"), lower.rlim_cur);
}

TEST_F(EngineLimitsTest, WhatStoodThereBeforeDoesNotCount) {
  folder_.write("work/before", std::string(output, 'x'));
  EngineRun order = engine("modest", "head -c 9000000 /dev/zero > new; sleep 0.2; echo fine");
  order.limits = EngineLimits{memory, output};
  EXPECT_EQ(run(order), "fine\n");
}

}  // namespace

}  // namespace tolvane
