#pragma once

#include <functional>

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
};

}  // namespace tolvane
