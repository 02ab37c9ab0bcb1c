#include "cli/interrupt.h"

#include <utility>

#include "platform/threads/event_loop.h"

namespace tolvane {

Interrupt::Interrupt(EventLoop& loop, std::function<void()> interrupted) : loop_(loop) {
  loop_.watch(signals_.descriptor(), [this, interrupted = std::move(interrupted)] {
    loop_.unwatch(signals_.descriptor());  // the loop holds a copy of this function meanwhile
    interrupted();
  });
}

Interrupt::~Interrupt() {
  loop_.unwatch(signals_.descriptor());
}

}  // namespace tolvane
