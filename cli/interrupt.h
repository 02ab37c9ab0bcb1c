#pragma once

#include <chrono>
#include <functional>

#include "platform/process/ending_signals.h"

namespace tolvane {

class EventLoop;

/// Turns the first Ctrl-C (or request to terminate, or closed terminal) into a call in the event
/// loop. A second one ends the process, for the case that the clean-up does not come to an end.
///
/// Make it before any thread is started, so that no other thread takes the signal.
class Interrupt {
 public:
  /// @param loop not owned; outlives this object.
  Interrupt(EventLoop& loop, std::function<void()> interrupted);
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

  /// As EndingSignals::endWithin.
  void endWithin(EndingSignals::Duration limit, int status) { signals_.endWithin(limit, status); }

 private:
  EndingSignals signals_;
  EventLoop& loop_;
};

}  // namespace tolvane
