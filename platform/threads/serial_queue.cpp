#include "platform/threads/serial_queue.h"

#include <pthread.h>
#include <utility>

namespace tolvane {

SerialQueue::SerialQueue(const std::string& label) : thread_([this] { work(); }) {
  constexpr std::size_t maxName = 15;  // of a Linux thread, without the final NUL
  const std::string name = label.size() > maxName ? label.substr(label.size() - maxName) : label;
  ::pthread_setname_np(thread_.native_handle(), name.c_str());
}

SerialQueue::~SerialQueue() {
  {
    const std::lock_guard guard(lock_);
    stopping_ = true;
  }
  changed_.notify_one();
  thread_.join();
}

void SerialQueue::post(Task task) {
  {
    const std::lock_guard guard(lock_);
    tasks_.push_back(std::move(task));
  }
  changed_.notify_one();
}

void SerialQueue::work() {
  std::unique_lock guard(lock_);
  while (true) {
    changed_.wait(guard, [this] { return stopping_ || !tasks_.empty(); });
    if (stopping_) {
      return;
    }
    Task task = std::move(tasks_.front());
    tasks_.pop_front();
    guard.unlock();
    task();
    // What the task holds may post when it goes, so it goes without the lock.
    task = nullptr;
    guard.lock();
  }
}

}  // namespace tolvane
