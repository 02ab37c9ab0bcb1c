#include "cli/interrupt.h"

#include <csignal>
#include <optional>
#include <utility>

#include "platform/threads/event_loop.h"

namespace tolvane {

Interrupt::Interrupt(EventLoop& loop,
                     std::function<void()> interrupted,
                     std::function<void()> ending)
    : loop_(loop), interrupted_(std::move(interrupted)), ending_(std::move(ending)) {
  loop_.watch(signals_.descriptor(), [this] { take(); });
}

Interrupt::~Interrupt() {
  loop_.unwatch(signals_.descriptor());
}

void Interrupt::take() {
  const std::optional<int> signal = signals_.take();
  if (signal && interrupted_) {
    std::exchange(interrupted_, nullptr)();
  } else if (signal == SIGINT) {
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
