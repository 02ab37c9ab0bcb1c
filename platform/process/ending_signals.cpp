#include "platform/process/ending_signals.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <poll.h>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "platform/ending/last_act.h"
#include "platform/ending/memory_reserve.h"
#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

constexpr unsigned longestCleanUp = 3;  // seconds

Descriptor required(int number) {
  Descriptor descriptor(number);
  if (!descriptor.isOpen()) {
    throw PlatformError::fromErrno("listen for signals", "", errno);
  }
  return descriptor;
}

Descriptor event() {
  return required(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
}

void signalEvent(const Descriptor& event) {
  const std::uint64_t one = 1;
  // Fails only when the counter is full, and then it is readable already.
  [[maybe_unused]] const ssize_t written = ::write(event.number(), &one, sizeof one);
}

/// @return the set, now blocked in this thread and in those that it starts.
sigset_t blocked() {
  sigset_t signals = {};
  ::sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action = {};
    // A blocked signal waits even when it is ignored.
    if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
      ::sigaddset(&signals, signal);
    }
  }
  ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return signals;
}

[[noreturn]] void dieOf(int signal) {
  sigset_t set = {};
  ::sigemptyset(&set);
  ::sigaddset(&set, signal);
  ::pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
  ::raise(signal);
  constexpr int signalled = 128;  // as shells tell it
  ::_exit(signalled + signal);
}

void clearUp() {
  // A file system that does not answer must not keep the process.
  std::signal(SIGALRM, SIG_DFL);
  ::alarm(longestCleanUp);
  LastAct::performAll();
}

}  // namespace

EndingSignals::EndingSignals(Duration patience)
    : patience_(patience),
      set_(blocked()),
      signals_(required(::signalfd(-1, &set_, SFD_CLOEXEC | SFD_NONBLOCK))),
      hasCome_(event()),
      news_(event()),
      thread_([this] { watch(); }) {}

EndingSignals::~EndingSignals() {
  {
    const std::lock_guard guard(lock_);
    isOver_ = true;
  }
  signalEvent(news_);
  thread_.join();
}

void EndingSignals::endWithin(Duration limit, int status) {
  setDeadline({Clock::now() + limit, 0, status});
}

void EndingSignals::setDeadline(const Deadline& deadline) {
  {
    const std::lock_guard guard(lock_);
    if (!deadline_ || deadline.time < deadline_->time) {
      deadline_ = deadline;
    }
  }
  signalEvent(news_);
}

void EndingSignals::watch() {
  constexpr int forGood = -1;
  std::array<pollfd, 3> watched = {{{signals_.number(), POLLIN, 0},
                                    {news_.number(), POLLIN, 0},
                                    {abort_.descriptor(), POLLIN, 0}}};
  for (;;) {
    std::unique_lock guard(lock_);
    if (isOver_) {
      return;
    }
    const std::optional<Deadline> deadline = deadline_;
    guard.unlock();
    int wait = forGood;
    if (deadline) {
      const auto left = std::chrono::ceil<Duration>(deadline->time - Clock::now());
      if (left <= Duration::zero()) {
        endNow(deadline->signal, deadline->status);
      }
      wait = static_cast<int>(left.count());
    }
    ::poll(watched.data(), watched.size(), wait);
    std::uint64_t ignored = 0;
    [[maybe_unused]] const ssize_t count = ::read(news_.number(), &ignored, sizeof ignored);
    if (abort_.hasCome()) {
      endAfterAbort();
    }
    take();
  }
}

void EndingSignals::take() {
  signalfd_siginfo taken = {};
  while (::read(signals_.number(), &taken, sizeof taken) > 0) {
    const int signal = static_cast<int>(taken.ssi_signo);
    if (isAsked_) {
      endNow(signal, 0);
    }
    isAsked_ = true;
    setDeadline({Clock::now() + patience_, signal, 0});
    signalEvent(hasCome_);
  }
}

void EndingSignals::endAfterAbort() {
  MemoryReserve::release();
  clearUp();
  constexpr std::string_view sentence =
      "The program was ended because a library could not go on, most often for lack of memory. "
      "Close other programs, or choose fewer or smaller files.\n";
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, sentence.data(), sentence.size());
  ::_exit(EXIT_FAILURE);
}

void EndingSignals::endNow(int signal, int status) {
  clearUp();
  if (signal == 0) {
    ::_exit(status);
  }
  dieOf(signal);
}

}  // namespace tolvane
