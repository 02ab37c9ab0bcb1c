#include "platform/process/ending_signals.h"

#include <cerrno>
#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

#include "platform/files/platform_error.h"

namespace tolvane {

EndingSignals::EndingSignals() {
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
  descriptor_ = Descriptor(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
  if (!descriptor_.isOpen()) {
    throw PlatformError::fromErrno("listen for signals", "", errno);
  }
}

std::optional<int> EndingSignals::take() {
  signalfd_siginfo taken = {};
  return ::read(descriptor_.number(), &taken, sizeof taken) > 0
             ? std::optional(static_cast<int>(taken.ssi_signo))
             : std::nullopt;
}

}  // namespace tolvane
