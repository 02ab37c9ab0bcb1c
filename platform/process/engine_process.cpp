#include "platform/process/engine_process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include "platform/files/platform_error.h"

namespace tolvane {

namespace {

constexpr int reportInHelper = 3;  // the number by which the helper knows its report
constexpr char startedMark = '+';  // stands first in a report once the confinement is complete
constexpr int signalled = 128;     // added to the number of a signal, as shells do

void checkSpawn(int code, const std::string& program) {
  if (code != 0) {
    throw PlatformError::fromErrno("start", program, code);
  }
}

/// What happens to descriptors in the new process.
class SpawnActions {
 public:
  SpawnActions() { checkSpawn(::posix_spawn_file_actions_init(&actions_), "an engine"); }
  ~SpawnActions() { ::posix_spawn_file_actions_destroy(&actions_); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  void open(int number, const char* path) {
    checkSpawn(::posix_spawn_file_actions_addopen(&actions_, number, path, O_RDONLY, 0), path);
  }
  void pass(int own, int number) {
    checkSpawn(::posix_spawn_file_actions_adddup2(&actions_, own, number), "an engine");
  }
  void closeFrom(int number) {
    checkSpawn(::posix_spawn_file_actions_addclosefrom_np(&actions_, number), "an engine");
  }
  [[nodiscard]] const posix_spawn_file_actions_t* native() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_ = {};
};

/// A session of its own: no terminal to ask for passwords at, no signals meant for the host. All
/// signals as in a fresh program.
class SpawnAttributes {
 public:
  SpawnAttributes() {
    sigset_t none = {};
    sigset_t all = {};
    ::sigemptyset(&none);
    ::sigfillset(&all);
    checkSpawn(::posix_spawnattr_init(&attributes_), "an engine");
    ::posix_spawnattr_setsigmask(&attributes_, &none);
    ::posix_spawnattr_setsigdefault(&attributes_, &all);
    ::posix_spawnattr_setflags(&attributes_,
                               POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnAttributes() { ::posix_spawnattr_destroy(&attributes_); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;

  [[nodiscard]] const posix_spawnattr_t* native() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_ = {};
};

/// A copy above the numbers that the new process gives a meaning to, so that passing one of them on
/// never overwrites another.
Descriptor highCopy(int original) {
  Descriptor copy(::fcntl(original, F_DUPFD_CLOEXEC, reportInHelper + 1));
  if (copy.number() < 0) {
    throw PlatformError::fromErrno("pass on", "a descriptor", errno);
  }
  return copy;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<std::string> assignments(const EngineProcess::Environment& environment) {
  std::vector<std::string> texts;
  texts.reserve(environment.size());
  for (const auto& [name, value] : environment) {
    texts.emplace_back(name).append("=").append(value);
  }
  return texts;
}

/// posix_spawn shares our memory with the new process until it runs its program: a host of a
/// gigabyte starts engines as fast as a small one, which fork would not.
pid_t spawn(const EngineProcess::Launch& launch, int report) {
  const Descriptor output = highCopy(launch.output);
  const Descriptor high = highCopy(report);
  SpawnActions actions;
  // An inherited terminal would be a way out: engines could read from it and type into it.
  actions.open(STDIN_FILENO, "/dev/null");
  actions.pass(output.number(), STDOUT_FILENO);
  actions.pass(output.number(), STDERR_FILENO);
  actions.pass(high.number(), reportInHelper);
  actions.closeFrom(reportInHelper + 1);
  const SpawnAttributes attributes;

  std::vector<std::string> command = launch.command;
  std::vector<std::string> environment = assignments(launch.environment);
  pid_t process = -1;
  checkSpawn(::posix_spawn(&process,
                           command.front().c_str(),
                           actions.native(),
                           attributes.native(),
                           pointersTo(command).data(),
                           pointersTo(environment).data()),
             command.front());
  return process;
}

/// @return a descriptor that becomes readable when the process ends.
Descriptor watch(pid_t process, const std::string& program) {
  Descriptor watched(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
  if (watched.number() < 0) {
    const int code = errno;
    ::kill(process, SIGQUIT);
    ::waitpid(process, nullptr, 0);
    throw PlatformError::fromErrno("watch", program, code);
  }
  return watched;
}

/// What has been written into a pipe so far.
std::string waitingReport(int pipe) {
  std::string text;
  std::array<char, 512> buffer = {};
  ssize_t count = 0;
  while ((count = ::read(pipe, buffer.data(), buffer.size())) > 0) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

/// @param trouble an error number, a space and what could not be done.
std::string sentence(const std::string& trouble) {
  const std::size_t space = std::min(trouble.find(' '), trouble.size() - 1);
  return trouble.substr(space + 1) + ": " +
         std::generic_category().message(std::atoi(trouble.c_str())) + ".";
}

/// Nothing that the engine starts outlives its helper, unless somebody kills the helper itself.
void killGroup(const std::string& report) {
  const pid_t group = report.empty() ? 0 : std::atoi(report.c_str() + 1);
  if (group > 1) {
    ::kill(-group, SIGKILL);
  }
}

}  // namespace

EngineProcess::EngineProcess(const Launch& launch) {
  std::array<int, 2> ends = {-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    throw PlatformError::fromErrno("make a pipe for", launch.command.front(), errno);
  }
  report_ = Descriptor(ends[0]);
  const Descriptor helpersEnd(ends[1]);
  process_ = watch(spawn(launch, helpersEnd.number()), launch.command.front());
  endWithThisProcess();
}

EngineProcess::~EngineProcess() {
  if (!status_) {
    kill();
    reap();
  }
}

bool EngineProcess::endsWithin(std::chrono::milliseconds limit) const {
  pollfd watched = {process_.number(), POLLIN, 0};
  // Interrupted by a signal: the caller looks at its clock and asks again.
  return ::poll(&watched, 1, static_cast<int>(limit.count())) > 0;
}

void EngineProcess::signal(int number) const noexcept {
  // Through the descriptor, which never names another process, as a number could.
  ::syscall(SYS_pidfd_send_signal, process_.number(), number, nullptr, 0);
}

void EngineProcess::askToEnd() const noexcept {
  signal(SIGTERM);
}

void EngineProcess::kill() const noexcept {
  signal(SIGQUIT);
}

void EngineProcess::endWithThisProcess() try {
  constexpr std::chrono::milliseconds limit(500);  // then the others' turn comes
  atTheEnd_.emplace([this, limit] {
    kill();
    (void)endsWithin(limit);
  });
} catch (const std::bad_alloc&) {
  kill();
  reap();
  throw;
}

void EngineProcess::reap() noexcept {
  siginfo_t info = {};
  rusage used = {};  // which only the system call itself tells
  while (::syscall(SYS_waitid, P_PIDFD, process_.number(), &info, WEXITED, &used) != 0 &&
         errno == EINTR) {
  }
  constexpr std::uint64_t kilobyte = 1024;
  peakMemory_ = static_cast<std::uint64_t>(used.ru_maxrss) * kilobyte;
  status_ = info.si_code == CLD_EXITED ? info.si_status : signalled + info.si_status;
  if (info.si_code != CLD_EXITED) {
    killGroup(waitingReport(report_.number()));
  }
}

int EngineProcess::exitStatus() {
  reap();
  const std::string report = waitingReport(report_.number());
  const auto lineEnd = std::find(report.begin(), report.end(), '\n');
  const bool hasStarted = !report.empty() && report.front() == startedMark;
  const std::string trouble(hasStarted && lineEnd != report.end() ? lineEnd + 1 : report.begin(),
                            report.end());
  if (!trouble.empty()) {
    throw PlatformError("Could not start the engine. " + sentence(trouble));
  }
  if (!hasStarted) {
    throw PlatformError("Could not start the engine. Its confinement failed.");
  }
  return *status_;
}

}  // namespace tolvane
