#pragma once

#include <chrono>
#include <csignal>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/files/descriptor.h"
#include "platform/process/abort_notice.h"

namespace tolvane {

/// The signals by which a terminal, a session or a user asks a program to end (SIGINT, SIGTERM and
/// SIGHUP alike), without those that its starter wants ignored (nohup).
///
/// The first of them is told to the program, which ends in its own way. A second one, or the end of
/// the time that the program has, ends it whatever its threads are doing: engines are killed, the
/// folders of running jobs removed (LastAct), and the process dies of that signal. A thread of this
/// object's own sees to that, since any other may be lost in a library. It ends the process in the
/// same way, with a sentence on standard error and status 1, when a library gives up (AbortNotice).
///
/// To be made before any other thread is started, which would be ended by the signals, and to
/// outlive all that may take long to end. Main thread only.
class EndingSignals {
 public:
  using Duration = std::chrono::milliseconds;

  /// What a program has after the first signal: for its user, who may have no terminal left to
  /// send a second one from.
  static constexpr Duration usualPatience = std::chrono::seconds(10);

  /// @param patience from the first signal on.
  /// @throws PlatformError
  explicit EndingSignals(Duration patience = usualPatience);
  /// The signals stay blocked.
  ~EndingSignals();
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

  /// Readable once the first signal has come, for good.
  [[nodiscard]] int descriptor() const { return hasCome_.number(); }

  /// The program is ending for another reason and has so much time, or less if it was given less
  /// before. @param status the exit status of a program that does not make it.
  void endWithin(Duration limit, int status);

 private:
  using Clock = std::chrono::steady_clock;
  struct Deadline {
    Clock::time_point time;
    int signal;  // 0: none, but `status`
    int status;
  };

  void watch();
  void take();
  void setDeadline(const Deadline& deadline);
  [[noreturn]] static void endNow(int signal, int status);
  [[noreturn]] static void endAfterAbort();

  Duration patience_;
  AbortNotice abort_;
  sigset_t set_ = {};
  Descriptor signals_;
  Descriptor hasCome_;  // eventfd
  Descriptor news_;     // eventfd: the deadline was changed, or the watch is over
  std::mutex lock_;     // guards the next two
  std::optional<Deadline> deadline_;
  bool isOver_ = false;
  bool isAsked_ = false;  // of the thread alone
  std::thread thread_;    // last: starts when everything else stands
};

}  // namespace tolvane
