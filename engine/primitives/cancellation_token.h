#pragma once

#include <mutex>

namespace tolvane {

/// The flag by which a running job is asked to stop. The main thread sets it, the worker polls it;
/// every member may be called from any thread.
class CancellationToken {
 public:
  /// Asks the job to stop. Cannot be taken back; calling it again changes nothing.
  void cancel();

  [[nodiscard]] bool isCancelled() const;

  /// A cancellation point.
  /// @throws ConversionFailure::cancelled() once cancel() was called.
  void check() const;

 private:
  mutable std::mutex lock_;
  bool value_ = false;
};

}  // namespace tolvane
