#include "platform/process/launcher.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/files/descriptor.h"
#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"

namespace tolvane::Launcher {

namespace {

/// The file that starting `program` would run; empty when there is none.
std::string executable(const std::string& program) {
  if (program.find('/') != std::string::npos) {
    return FileSystem::isExecutableFile(program) ? program : std::string();
  }
  const char* path = std::getenv("PATH");  // NOLINT(concurrency-mt-unsafe): nobody sets any
  std::istringstream folders(path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin");
  for (std::string folder; std::getline(folders, folder, ':');) {
    const bool isNamed = !folder.empty();
    folder.append("/").append(program);
    if (isNamed && FileSystem::isExecutableFile(folder)) {
      return folder;
    }
  }
  return {};
}

/// A file without a name that holds `input`, read from its start: unlike a pipe it never blocks.
int fileWith(const std::string& input) {
  const int file = ::memfd_create("tolvane-input", MFD_CLOEXEC);
  if (file < 0) {
    throw PlatformError::fromErrno("prepare the input", "", errno);
  }
  if (::pwrite(file, input.data(), input.size(), 0) != static_cast<ssize_t>(input.size())) {
    const int code = errno;
    ::close(file);
    throw PlatformError::fromErrno("prepare the input", "", code);
  }
  return file;
}

/// What the new process needs, made before it exists: after the fork only calls that are safe in a
/// copy of a process with threads are made.
struct Plan {
  const char* file;
  char* const* arguments;
  int input;
  int failure;  // where it reports why it could not become the program; closed when it does
};

[[noreturn]] void fail(const Plan& plan) {
  const int code = errno;
  [[maybe_unused]] const ssize_t written = ::write(plan.failure, &code, sizeof code);
  ::_exit(127);
}

[[noreturn]] void becomeProgram(const Plan& plan) {
  sigset_t none = {};
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);  // NOLINT(concurrency-mt-unsafe): one thread here
  for (const int ignoredByUs : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ, SIGCHLD}) {
    ::signal(ignoredByUs, SIG_DFL);
  }
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0 || ::dup2(plan.input, STDIN_FILENO) < 0 || ::dup2(nowhere, STDOUT_FILENO) < 0 ||
      ::dup2(nowhere, STDERR_FILENO) < 0 ||
      ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC) != 0) {
    fail(plan);
  }
  ::execv(plan.file, plan.arguments);
  fail(plan);
}

/// Twice removed from us, the program is adopted, and in the end reaped, by the init process.
[[noreturn]] void startSession(const Plan& plan) {
  ::setsid();
  const pid_t program = ::fork();
  if (program < 0) {
    fail(plan);
  }
  if (program == 0) {
    becomeProgram(plan);
  }
  ::_exit(0);
}

/// @return the code that the new process reported; 0 when it became the program.
int reportedBy(int pipe) {
  int code = 0;
  ssize_t count = 0;
  do {
    count = ::read(pipe, &code, sizeof code);
  } while (count < 0 && errno == EINTR);
  return count > 0 ? code : 0;
}

void reap(pid_t process) {
  while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace

bool isInstalled(const std::string& program) {
  return !executable(program).empty();
}

void start(const std::string& program,
           const std::vector<std::string>& arguments,
           const std::string& input) {
  const std::string file = executable(program);
  if (file.empty()) {
    throw PlatformError::fromErrno("start", program, ENOENT);
  }
  std::vector<char*> pointers = {const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) {
    pointers.push_back(const_cast<char*>(argument.c_str()));
  }
  pointers.push_back(nullptr);
  const Descriptor content(fileWith(input));
  std::array<int, 2> ends = {};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw PlatformError::fromErrno("start a program", "", errno);
  }
  const Descriptor reports(ends[0]);
  Descriptor failure(ends[1]);

  const pid_t session = ::fork();
  if (session < 0) {
    throw PlatformError::fromErrno("start a program", "", errno);
  }
  if (session == 0) {
    startSession({file.c_str(), pointers.data(), content.number(), failure.number()});
  }
  failure = Descriptor();
  reap(session);
  if (const int code = reportedBy(reports.number()); code != 0) {
    throw PlatformError::fromErrno("start", file, code);
  }
}

}  // namespace tolvane::Launcher
