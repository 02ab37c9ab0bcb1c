#pragma once

#include <optional>

#include "platform/files/descriptor.h"

namespace tolvane {

/// The signals by which a terminal, a session or a user asks a program to end, without those that
/// its starter wants ignored (nohup). They wait to be taken. To be made before any other thread is
/// started, which would be ended by them.
class EndingSignals {
 public:
  /// @throws PlatformError
  EndingSignals();

  /// Readable while one waits.
  [[nodiscard]] int descriptor() const { return descriptor_.number(); }
  /// @return the number of one that waits; nullopt when there is none.
  [[nodiscard]] std::optional<int> take();

 private:
  Descriptor descriptor_;
};

}  // namespace tolvane
