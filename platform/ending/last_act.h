#pragma once

#include <functional>

namespace tolvane {

/// Something that is still done when this process ends without waiting for its threads: an engine
/// killed, a folder removed. Any thread.
class LastAct {
 public:
  /// @param act called once at most, on any thread, while this object lives; what it throws is
  ///   dropped.
  explicit LastAct(std::function<void()> act);
  ~LastAct();
  LastAct(const LastAct&) = delete;
  LastAct& operator=(const LastAct&) = delete;

  /// Performs the acts of all objects that live, the newest first. The caller ends the process:
  /// from here on, threads that make or end one wait for that, so that nothing new begins and no
  /// act meets an object that is gone.
  static void performAll() noexcept;

 private:
  std::function<void()> act_;
};

}  // namespace tolvane
