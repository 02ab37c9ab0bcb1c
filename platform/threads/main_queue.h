#pragma once

#include <functional>
#include <utility>

namespace tolvane {

/// The road back to the main thread. Posted tasks run there, one at a time, in the order of
/// posting.
class MainQueue {
 public:
  using Task = std::function<void()>;

  MainQueue() = default;
  virtual ~MainQueue() = default;
  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;

  /// From any thread; returns at once.
  virtual void post(Task task) = 0;
  /// As post(), and in one order with it, for tasks that come in bursts and may wait for a
  /// hundredth of a second: waking a sleeping main thread costs the caller some 30 µs.
  virtual void postSoon(Task task) { post(std::move(task)); }
};

}  // namespace tolvane
