#pragma once

#include <functional>

#include "platform/process/ending_signals.h"

namespace tolvane {

class EventLoop;

/// Turns the first Ctrl-C (or request to terminate, or closed terminal) into a call in the event
/// loop. A Ctrl-C after that ends the process, for the case that the clean-up does not come to an
/// end, and one more ends it at once.
///
/// Make it before any thread is started, so that no other thread takes the signal.
class Interrupt {
 public:
  /// @param loop not owned; outlives this object.
  /// @param ending called in the loop before the second Ctrl-C ends the process.
  Interrupt(EventLoop& loop, std::function<void()> interrupted, std::function<void()> ending);
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

 private:
  void take();
  void end();

  EndingSignals signals_;
  EventLoop& loop_;
  std::function<void()> interrupted_;  // empty once it was called
  std::function<void()> ending_;
};

}  // namespace tolvane
