#include "platform/process/ending_signals.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <poll.h>
#include <stdexcept>

#include <gtest/gtest.h>

#include "platform/ending/last_act.h"

namespace tolvane {
namespace {

using namespace std::chrono_literals;

/// A main thread that is lost in a library.
[[noreturn]] void neverComeBack() {
  for (;;) {
    ::pause();
  }
}

void waitForTheFirst(const EndingSignals& signals) {
  pollfd watched = {signals.descriptor(), POLLIN, 0};
  ::poll(&watched, 1, -1);
}

void beLostAfter(int first, int second) {
  const EndingSignals signals;
  const LastAct older([] { std::fputs("older", stderr); });
  const LastAct faulty([] { throw std::runtime_error("of no consequence"); });
  const LastAct newer([] { std::fputs("newer, ", stderr); });
  {
    const LastAct over([] { std::fputs("over, ", stderr); });
  }
  ::kill(::getpid(), first);
  waitForTheFirst(signals);
  std::fputs("first, ", stderr);
  ::kill(::getpid(), second);
  neverComeBack();
}

TEST(EndingSignalsDeathTest, EndTheProcessAtTheSecond) {
  for (const int second : {SIGINT, SIGTERM, SIGHUP}) {
    EXPECT_EXIT(
        beLostAfter(SIGTERM, second), ::testing::KilledBySignal(second), "^first, newer, older$");
  }
}

TEST(EndingSignalsDeathTest, EndTheProcessWhenItsTimeIsOver) {
  EXPECT_EXIT(
      {
        const EndingSignals signals(10ms);
        ::kill(::getpid(), SIGHUP);
        neverComeBack();
      },
      ::testing::KilledBySignal(SIGHUP),
      "");
  constexpr int status = 7;
  EXPECT_EXIT(
      {
        EndingSignals signals;
        signals.endWithin(10ms, status);
        signals.endWithin(1h, 0);
        neverComeBack();
      },
      ::testing::ExitedWithCode(status),
      "");
}

TEST(EndingSignalsDeathTest, EndTheProcessInOrderWhenALibraryGivesUp) {
#ifdef __SANITIZE_ADDRESS__  // which answers for the others itself
  const auto given = {SIGABRT, SIGTRAP};
#else
  const auto given = {SIGABRT, SIGTRAP, SIGSEGV, SIGBUS};
#endif
  for (const int signal : given) {
    EXPECT_EXIT(
        {
          const EndingSignals signals;
          const LastAct act([] { std::fputs("act. ", stderr); });
          std::raise(signal);
        },
        ::testing::ExitedWithCode(1),
        "^act\\. The program was ended because a library could not go on, ");
  }
}

TEST(EndingSignalsDeathTest, LetNothingBeginOnceTheProcessEnds) {
  EXPECT_EXIT(
      {
        EndingSignals signals;
        const LastAct slow([&signals] {
          signals.endWithin(1h, 0);  // what the process does meanwhile changes nothing
          std::fputs("slow", stderr);
        });
        ::kill(::getpid(), SIGTERM);
        waitForTheFirst(signals);
        ::kill(::getpid(), SIGTERM);
        for (;;) {
          const LastAct later([] {});
        }
      },
      ::testing::KilledBySignal(SIGTERM),
      "^slow$");
}

}  // namespace
}  // namespace tolvane
