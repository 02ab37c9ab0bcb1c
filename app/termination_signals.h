#pragma once

#include <functional>
#include <memory>

#include "platform/process/ending_signals.h"

class QSocketNotifier;

namespace tolvane {

/// The signals that ask the host to end, told in Qt's loop. Main thread only; to be made before
/// there are other threads, Qt's among them.
class TerminationSignals {
 public:
  /// @throws PlatformError
  TerminationSignals();
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

  /// @param arrived called in the loop at the first signal, also for one that came before; a second
  ///   one ends the process.
  void listen(std::function<void()> arrived);

  /// As EndingSignals::endWithin.
  void endWithin(EndingSignals::Duration limit, int status) { signals_.endWithin(limit, status); }

 private:
  EndingSignals signals_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace tolvane
