#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

namespace tolvane {

/// The signals by which a session, or a terminal, asks a program to end. Main thread only; to be
/// made before there are other threads, Qt's among them, which must not take the signals.
class TerminationSignals {
 public:
  /// @throws PlatformError
  TerminationSignals();
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

  /// @param arrived called in the loop, once for each signal, also for one that came before.
  void listen(std::function<void()> arrived);

 private:
  int descriptor_;  // signalfd, owned
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace tolvane
