#include "app/termination_signals.h"

#include <cerrno>
#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>
#include <utility>

#include <QSocketNotifier>

#include "platform/files/platform_error.h"

namespace tolvane {

TerminationSignals::TerminationSignals() {
  sigset_t signals = {};
  ::sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    ::sigaddset(&signals, signal);
  }
  ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  descriptor_ = ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
  if (descriptor_ < 0) {
    throw PlatformError::fromErrno("listen for signals", "", errno);
  }
}

void TerminationSignals::listen(std::function<void()> arrived) {
  notifier_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
  QObject::connect(
      notifier_.get(), &QSocketNotifier::activated, [this, arrived = std::move(arrived)] {
        signalfd_siginfo taken = {};
        while (::read(descriptor_, &taken, sizeof taken) > 0) {
          arrived();
        }
      });
}

TerminationSignals::~TerminationSignals() {
  notifier_.reset();
  ::close(descriptor_);
}

}  // namespace tolvane
