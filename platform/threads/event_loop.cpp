#include "platform/threads/event_loop.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

constexpr auto longestWait = std::chrono::milliseconds(10);  // of what may wait

}  // namespace

EventLoop::EventLoop() : wakeUp_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (wakeUp_ < 0) {
    throw PlatformError::fromErrno("start the event loop", "", errno);
  }
}

EventLoop::~EventLoop() {
  ::close(wakeUp_);
}

void EventLoop::post(Task task) {
  {
    const std::lock_guard guard(lock_);
    posted_.push_back(std::move(task));
    isUrgent_ = true;
  }
  wakeUp();
}

void EventLoop::postSoon(Task task) {
  bool isFirst = false;
  {
    const std::lock_guard guard(lock_);
    isFirst = posted_.empty();
    posted_.push_back(std::move(task));
  }
  if (isFirst) {
    wakeUp();  // to set its deadline
  }
}

void EventLoop::wakeUp() const {
  const std::uint64_t one = 1;
  // Fails only when the counter is full, and then the loop is awake already.
  [[maybe_unused]] const ssize_t written = ::write(wakeUp_, &one, sizeof one);
}

void EventLoop::watch(int descriptor, Task ready) {
  watched_[descriptor] = std::move(ready);
}

void EventLoop::unwatch(int descriptor) {
  watched_.erase(descriptor);
}

void EventLoop::run() {
  running_ = true;
  // What an earlier run left behind may have used up its wake-up.
  runPosted();
  while (running_) {
    waitForWork();
  }
}

void EventLoop::runPosted() {
  std::size_t left = 0;
  {
    const std::lock_guard guard(lock_);
    left = posted_.size();
    isUrgent_ = false;
  }
  deadline_.reset();
  // Tasks that these post wait for the next turn, so that watched descriptors have theirs.
  for (; left > 0 && running_; --left) {
    nextPosted()();
  }
}

EventLoop::Task EventLoop::nextPosted() {
  const std::lock_guard guard(lock_);
  Task task = std::move(posted_.front());
  posted_.pop_front();
  return task;
}

bool EventLoop::postedIsDue() {
  const std::lock_guard guard(lock_);
  return isUrgent_ || (deadline_ && Clock::now() >= *deadline_);
}

int EventLoop::patience() {
  const std::lock_guard guard(lock_);
  if (posted_.empty()) {
    return -1;
  }
  if (isUrgent_) {
    return 0;
  }
  const Clock::time_point now = Clock::now();
  deadline_ = deadline_.value_or(now + longestWait);
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline_ - now);
  return std::max(static_cast<int>(left.count()), 0);
}

void EventLoop::waitForWork() {
  std::vector<pollfd> polled = {{wakeUp_, POLLIN, 0}};
  for (const auto& [descriptor, ready] : watched_) {
    polled.push_back({descriptor, POLLIN, 0});
  }
  if (::poll(polled.data(), polled.size(), patience()) < 0) {
    if (errno == EINTR) {
      return;
    }
    throw PlatformError::fromErrno("wait for events", "", errno);
  }
  if (polled.front().revents != 0) {
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t read = ::read(wakeUp_, &count, sizeof count);
  }
  if (postedIsDue()) {
    runPosted();
  }
  for (std::size_t index = 1; index < polled.size() && running_; ++index) {
    // An earlier callback may have stopped watching this one.
    const auto found = watched_.find(polled[index].fd);
    if (polled[index].revents != 0 && found != watched_.end()) {
      const Task ready = found->second;
      ready();
    }
  }
}

}  // namespace tolvane
