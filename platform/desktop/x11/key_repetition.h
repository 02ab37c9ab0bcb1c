#pragma once

#include <cstdint>

namespace tolvane {

/// Tells a key that repeats itself from one that is pressed again: while it is held down, X servers
/// release and press it at the same time.
class KeyRepetition {
 public:
  /// @param time the server's, in milliseconds; so for presses.
  void released(std::uint64_t time) { lastRelease_ = time; }
  [[nodiscard]] bool isSeenAt(std::uint64_t time) const { return time == lastRelease_; }

 private:
  std::uint64_t lastRelease_ = 0;
};

}  // namespace tolvane
