#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/ending/last_act.h"
#include "platform/files/descriptor.h"

namespace tolvane {

/// A running engine: the confinement helper and everything below it. Any thread, one at a time; the
/// engine ends when the thread that started it ends, and before a process that does not wait for
/// its threads.
///
/// The helper (tolvane-confine) stands between us and the engine. It lives until the last
/// descendant of the engine is gone, so its end is the engine's.
class EngineProcess {
 public:
  using Environment = std::map<std::string, std::string>;

  struct Launch {
    std::vector<std::string> command;  ///< the helper's absolute path, then its arguments
    Environment environment;           ///< all of it
    int output = -1;                   ///< takes standard output and standard error; not owned
  };

  /// Returns as soon as the process exists.
  /// @throws PlatformError when it cannot be started.
  explicit EngineProcess(const Launch& launch);
  /// Stops the engine if it still runs.
  ~EngineProcess();
  EngineProcess(const EngineProcess&) = delete;
  EngineProcess& operator=(const EngineProcess&) = delete;

  /// Waits for the end, which is noticed at once.
  /// @return whether the engine has ended.
  [[nodiscard]] bool endsWithin(std::chrono::milliseconds limit) const;

  /// Has the helper send SIGTERM to the engine and all its descendants.
  void askToEnd() const noexcept;
  /// Has the helper kill all of them, which SIGQUIT means to it.
  void kill() const noexcept;

  /// Waits for the end.
  /// @return the engine's exit status; 128 + the number of the signal that ended it.
  /// @throws PlatformError when the engine never came to run.
  [[nodiscard]] int exitStatus();
  /// Bytes that the largest process of the engine had in memory at one time. After exitStatus().
  [[nodiscard]] std::uint64_t peakMemory() const { return peakMemory_; }

 private:
  void signal(int number) const noexcept;
  void endWithThisProcess();
  void reap() noexcept;

  Descriptor report_;          // the helper's words, as far as they were not yet read
  Descriptor process_;         // a pidfd of the helper
  std::optional<int> status_;  // present once reaped
  std::uint64_t peakMemory_ = 0;
  std::optional<LastAct> atTheEnd_;
};

}  // namespace tolvane
