#include "universal/toolchain/confine/supervisor.h"

#include <cerrno>
#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>

#include "universal/toolchain/confine/report.h"

namespace tolvane::confine::Supervisor {

namespace {

constexpr int signalled = 128;  // added to the number of a signal, as shells do

/// Looks for a process that has ended, without waiting for one or reaping it.
Kernel::Answer look(idtype_t kind, pid_t process, siginfo_t& info) {
  return Kernel::call(SYS_waitid, kind, process, &info, WEXITED | WNOHANG | WNOWAIT, nullptr);
}

void killAll(pid_t engine, int signal) {
  Kernel::call(SYS_kill, -engine, signal);
}

/// @return whether the engine itself, the leader of its group, has ended. It is not yet reaped, so
/// its number still names its group and no other.
bool engineHasEnded(pid_t engine) {
  siginfo_t info = {};
  return look(P_PID, engine, info) == 0 && info.si_pid == engine;
}

/// Reaps descendants whose parents are gone, so that a long run does not gather zombies.
void reapOthers(pid_t engine) {
  siginfo_t info = {};
  while (look(P_ALL, 0, info) == 0 && info.si_pid > 0 && info.si_pid != engine) {
    Kernel::call(SYS_wait4, info.si_pid, nullptr, 0, nullptr);
    info = {};
  }
}

/// @return the engine's status.
int reapAll(pid_t engine) {
  int status = 0;
  int engineStatus = 0;
  for (;;) {
    const Kernel::Answer ended = Kernel::call(SYS_wait4, -1, &status, 0, nullptr);
    if (ended == engine) {
      engineStatus = status;
    } else if (ended == -ECHILD) {
      return engineStatus;
    }
  }
}

[[noreturn]] void watch(pid_t engine) {
  constexpr Kernel::Signals watched =
      Kernel::setOf(SIGCHLD) | Kernel::setOf(SIGTERM) | Kernel::setOf(SIGQUIT);
  while (!engineHasEnded(engine)) {
    reapOthers(engine);
    switch (Kernel::call(SYS_rt_sigtimedwait, &watched, nullptr, nullptr, sizeof watched)) {
      case SIGTERM:
        killAll(engine, SIGTERM);
        break;
      case SIGQUIT:
        killAll(engine, SIGKILL);
        break;
      default:
        break;
    }
  }
  killAll(engine, SIGKILL);  // what the engine left running in the background
  const int status = reapAll(engine);
  Kernel::exit(WIFEXITED(status) ? WEXITSTATUS(status) : signalled + WTERMSIG(status));
}

}  // namespace

pid_t splitOff(pid_t host) {
  constexpr Kernel::Signals all = ~Kernel::Signals{0};
  Kernel::Signals inherited = 0;
  Report::check(Kernel::block(all, &inherited), "signals");
  Report::check(Kernel::call(SYS_prctl, PR_SET_PDEATHSIG, SIGQUIT), "parent death signal");
  if (Kernel::parent() != host) {
    Kernel::exit(signalled + SIGKILL);  // it was gone before the signal was asked for
  }
  Report::check(Kernel::call(SYS_prctl, PR_SET_CHILD_SUBREAPER, 1), "subreaper");

  const auto supervisor = static_cast<pid_t>(Kernel::call(SYS_getpid));
  const auto engine = static_cast<pid_t>(Kernel::call(SYS_clone, SIGCHLD, 0, 0, 0, 0));
  Report::check(engine, "fork");
  if (engine > 0) {
    Kernel::call(SYS_setpgid, engine, engine);  // in both processes: whichever comes first
    watch(engine);
  }
  Kernel::call(SYS_setpgid, 0, 0);
  Report::check(Kernel::block(inherited, nullptr), "signals");
  return supervisor;
}

void endWith(pid_t supervisor) {
  Report::check(Kernel::call(SYS_prctl, PR_SET_PDEATHSIG, SIGKILL), "parent death signal");
  if (Kernel::parent() != supervisor) {
    Kernel::exit(signalled + SIGKILL);
  }
}

}  // namespace tolvane::confine::Supervisor
