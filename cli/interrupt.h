#pragma once

#include <functional>

namespace tolvane {

class EventLoop;

/// Turns the first Ctrl-C (or request to terminate, or closed terminal) into a call in the event
/// loop. The second one ends the process at once, for the case that the clean-up does not come to
/// an end.
///
/// Make it before any thread is started, so that no other thread takes the signal.
class Interrupt {
 public:
  /// @param loop not owned; outlives this object.
  Interrupt(EventLoop& loop, std::function<void()> interrupted);
  ~Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;

 private:
  void take();

  EventLoop& loop_;
  std::function<void()> interrupted_;
  int descriptor_ = -1;  // signalfd, owned
};

}  // namespace tolvane
