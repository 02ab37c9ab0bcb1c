#include "cli/interrupt.h"

#include <csignal>
#include <cstdio>

#include <gtest/gtest.h>

#include "platform/threads/event_loop.h"

namespace tolvane {
namespace {

void runInterruptedTwice() {
  EventLoop loop;
  const Interrupt interrupt(
      loop,
      [] {
        std::fputs("first, ", stderr);
        std::raise(SIGINT);
      },
      [] { std::fputs("second", stderr); });
  std::raise(SIGINT);
  loop.run();
}

TEST(InterruptDeathTest, EndsTheProcessAtTheSecondControlC) {
  EXPECT_EXIT(runInterruptedTwice(), ::testing::KilledBySignal(SIGINT), "^first, second$");
}

}  // namespace
}  // namespace tolvane
