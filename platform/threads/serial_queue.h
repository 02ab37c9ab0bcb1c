#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace tolvane {

/// One worker thread that runs tasks one at a time, in the order of posting.
class SerialQueue {
 public:
  using Task = std::function<void()>;

  /// @param label the thread's name in debuggers and process listings (its last 15 bytes).
  explicit SerialQueue(const std::string& label);
  /// Waits for the running task; tasks that have not begun are dropped.
  ~SerialQueue();
  SerialQueue(const SerialQueue&) = delete;
  SerialQueue& operator=(const SerialQueue&) = delete;

  /// From any thread; returns at once. A task must not throw.
  void post(Task task);

 private:
  void work();

  std::mutex lock_;  // guards tasks_ and stopping_
  std::condition_variable changed_;
  std::deque<Task> tasks_;
  bool stopping_ = false;
  std::thread thread_;  // last: starts when everything else stands
};

}  // namespace tolvane
