#include "cli/interrupt.h"

#include <cerrno>
#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>
#include <utility>

#include "platform/files/platform_error.h"
#include "platform/threads/event_loop.h"

namespace tolvane {

namespace {

/// The signals that ask a program to end, without those that its caller wants ignored (nohup).
sigset_t endingSignals() {
  sigset_t signals = {};
  ::sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action = {};
    if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
      ::sigaddset(&signals, signal);
    }
  }
  return signals;
}

}  // namespace

Interrupt::Interrupt(EventLoop& loop,
                     std::function<void()> interrupted,
                     std::function<void()> ending)
    : loop_(loop), interrupted_(std::move(interrupted)), ending_(std::move(ending)) {
  const sigset_t signals = endingSignals();
  ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  descriptor_ = ::signalfd(-1, &signals, SFD_CLOEXEC);
  if (descriptor_ < 0) {
    throw PlatformError::fromErrno("listen for signals", "", errno);
  }
  loop_.watch(descriptor_, [this] { take(); });
}

Interrupt::~Interrupt() {
  loop_.unwatch(descriptor_);
  ::close(descriptor_);
}

void Interrupt::take() {
  signalfd_siginfo taken = {};
  [[maybe_unused]] const ssize_t count = ::read(descriptor_, &taken, sizeof taken);
  if (interrupted_) {
    std::exchange(interrupted_, nullptr)();
  } else if (taken.ssi_signo == SIGINT) {
    end();
  }
}

void Interrupt::end() {
  sigset_t controlC = {};
  ::sigemptyset(&controlC);
  ::sigaddset(&controlC, SIGINT);
  ::pthread_sigmask(SIG_UNBLOCK, &controlC, nullptr);
  ending_();
  std::raise(SIGINT);
}

}  // namespace tolvane
