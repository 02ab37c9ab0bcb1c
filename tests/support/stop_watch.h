#pragma once

#include <chrono>

namespace tolvane::support {

/// Seconds since this object was made.
class StopWatch {
 public:
  [[nodiscard]] double seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace tolvane::support
