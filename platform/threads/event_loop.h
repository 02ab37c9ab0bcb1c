#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <mutex>
#include <optional>

#include "platform/threads/main_queue.h"

namespace tolvane {

/// The main thread's loop in programs without a desktop toolkit: runs posted tasks and calls back
/// when a watched descriptor can be read. Only post() may be called from other threads.
class EventLoop final : public MainQueue {
 public:
  EventLoop();
  ~EventLoop() override;
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  void post(Task task) override;
  void postSoon(Task task) override;

  /// Calls `ready` in the loop whenever `descriptor` (not owned) is readable or at its end.
  void watch(int descriptor, Task ready);
  void unwatch(int descriptor);

  /// Runs until quit(). A task that throws ends the run with its exception.
  void run();
  /// Ends run() after the current task; tasks still queued stay queued, for the next run().
  void quit() { running_ = false; }

 private:
  using Clock = std::chrono::steady_clock;

  void wakeUp() const;
  void runPosted();
  [[nodiscard]] Task nextPosted();
  [[nodiscard]] bool postedIsDue();
  /// @return milliseconds to sleep at most; -1 when nothing is posted.
  [[nodiscard]] int patience();
  void waitForWork();

  std::mutex lock_;  // guards the next two
  std::deque<Task> posted_;
  bool isUrgent_ = false;                      // one of them may not wait
  std::optional<Clock::time_point> deadline_;  // for those that may; of the loop's thread alone
  std::map<int, Task> watched_;
  int wakeUp_;  // eventfd, owned; readable while the loop has not seen the last news
  bool running_ = false;
};

}  // namespace tolvane
