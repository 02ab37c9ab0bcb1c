#pragma once

#include <chrono>
#include <thread>

namespace tolvane::support {

/// Waits for something that another process does. @return whether it was done in time.
template <typename Condition>
bool eventually(const Condition& condition, std::chrono::seconds limit = std::chrono::seconds(10)) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

}  // namespace tolvane::support
