#include "platform/process/abort_notice.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int watchedSignals[] = {SIGABRT, SIGTRAP};  // the others have handlers already
#else
constexpr int watchedSignals[] = {SIGABRT, SIGTRAP, SIGSEGV, SIGBUS, SIGFPE};
#endif
constexpr unsigned longestWait = 5;  // seconds

std::atomic<int> event = -1;

void tellAndWait(int number) {
  const std::uint64_t one = 1;
  if (::write(event, &one, sizeof one) > 0) {
    for (unsigned left = longestWait; left > 0;) {
      left = ::sleep(left);  // other signals interrupt it
    }
  }
  // Nobody has ended the process: now it ends as it would have.
  std::signal(number, SIG_DFL);
  std::raise(number);
}

}  // namespace

AbortNotice::AbortNotice() : event_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!event_.isOpen()) {
    throw PlatformError::fromErrno("watch for failures", "", errno);
  }
  event = event_.number();
  for (const int number : watchedSignals) {
    std::signal(number, tellAndWait);
  }
}

AbortNotice::~AbortNotice() {
  for (const int number : watchedSignals) {
    std::signal(number, SIG_DFL);
  }
  event = -1;
}

bool AbortNotice::hasCome() const {
  std::uint64_t count = 0;
  return ::read(event_.number(), &count, sizeof count) > 0;
}

}  // namespace tolvane
