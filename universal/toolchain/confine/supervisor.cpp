#include "universal/toolchain/confine/supervisor.h"

#include <cerrno>
#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "universal/toolchain/confine/report.h"

namespace tolvane::confine::Supervisor {

namespace {

constexpr int signalled = 128;  // added to the number of a signal, as shells do

/// @return whether the engine itself, the leader of its group, has ended. It is not yet reaped, so
/// its number still names its group and no other.
bool engineHasEnded(pid_t engine) {
  siginfo_t info = {};
  return ::waitid(P_PID, static_cast<id_t>(engine), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         info.si_pid == engine;
}

/// Reaps descendants whose parents are gone, so that a long run does not gather zombies.
void reapOthers(pid_t engine) {
  siginfo_t info = {};
  while (::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid > 0 &&
         info.si_pid != engine) {
    ::waitpid(info.si_pid, nullptr, 0);
    info = {};
  }
}

/// @return the engine's status.
int reapAll(pid_t engine) {
  int status = 0;
  int engineStatus = 0;
  for (;;) {
    const pid_t ended = ::waitpid(-1, &status, 0);
    if (ended == engine) {
      engineStatus = status;
    } else if (ended < 0 && errno == ECHILD) {
      return engineStatus;
    }
  }
}

[[noreturn]] void watch(pid_t engine, const sigset_t& watched) {
  while (!engineHasEnded(engine)) {
    reapOthers(engine);
    switch (::sigwaitinfo(&watched, nullptr)) {
      case SIGTERM:
        ::kill(-engine, SIGTERM);
        break;
      case SIGQUIT:
        ::kill(-engine, SIGKILL);
        break;
      default:
        break;
    }
  }
  ::kill(-engine, SIGKILL);  // what the engine left running in the background
  const int status = reapAll(engine);
  ::_exit(WIFEXITED(status) ? WEXITSTATUS(status) : signalled + WTERMSIG(status));
}

}  // namespace

pid_t splitOff(pid_t host) {
  sigset_t all = {};
  ::sigfillset(&all);
  sigset_t inherited = {};
  ::sigprocmask(SIG_BLOCK, &all, &inherited);
  Report::check(::prctl(PR_SET_PDEATHSIG, SIGQUIT), "parent death signal");
  if (::getppid() != host) {
    ::_exit(signalled + SIGKILL);  // it was gone before the signal was asked for
  }
  Report::check(::prctl(PR_SET_CHILD_SUBREAPER, 1), "subreaper");

  const pid_t supervisor = ::getpid();
  const pid_t engine = ::fork();
  Report::check(engine, "fork");
  if (engine > 0) {
    ::setpgid(engine, engine);  // in both processes: whichever comes first
    sigset_t watched = {};
    ::sigemptyset(&watched);
    for (const int signal : {SIGCHLD, SIGTERM, SIGQUIT}) {
      ::sigaddset(&watched, signal);
    }
    watch(engine, watched);
  }
  ::setpgid(0, 0);
  ::sigprocmask(SIG_SETMASK, &inherited, nullptr);
  return supervisor;
}

void endWith(pid_t supervisor) {
  Report::check(::prctl(PR_SET_PDEATHSIG, SIGKILL), "parent death signal");
  if (::getppid() != supervisor) {
    ::_exit(signalled + SIGKILL);
  }
}

}  // namespace tolvane::confine::Supervisor
