#pragma once

#include <functional>

namespace tolvane {

/// Tells that the computer has woken from sleep. Main thread only.
class WakeNotices {
 public:
  WakeNotices() = default;
  virtual ~WakeNotices() = default;
  WakeNotices(const WakeNotices&) = delete;
  WakeNotices& operator=(const WakeNotices&) = delete;

  /// @param woken called after every wake; an empty one takes the last one back. Where nobody tells
  /// of sleep it is never called.
  virtual void onWake(std::function<void()> woken) = 0;
};

}  // namespace tolvane
