// tolvane-confine: runs one engine so that it can write nowhere but in its own places, has no
// network, and leaves no process behind.
//
// No single layer of the kernel gives that. Mounts do not stop sockets, FIFOs and devices; the path
// rules (Landlock) do not know permissions, owners, times and attributes; a system-call filter sees
// no paths. So the three are stacked here, in a program of its own that costs half a millisecond,
// rather than in the host, which is too large to be forked.

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "universal/toolchain/confine/call_filter.h"
#include "universal/toolchain/confine/mounts.h"
#include "universal/toolchain/confine/options.h"
#include "universal/toolchain/confine/path_rules.h"
#include "universal/toolchain/confine/report.h"
#include "universal/toolchain/confine/rights.h"
#include "universal/toolchain/confine/supervisor.h"
#include "universal/toolchain/confine/trial.h"

namespace tolvane::confine {

namespace {

/// Keeps standard input, output, error and the report.
void closeOtherDescriptors() {
  Report::check(Kernel::call(SYS_close_range, Report::descriptor + 1, ~0U, 0), "close_range");
}

/// An inherited terminal could be typed into, read from and asked for passwords. The device is
/// opened anew, below the read-only mounts, because permissions can be changed through a descriptor
/// from outside.
void readNothing() {
  constexpr const char* nothing = "/dev/null";
  Kernel::call(SYS_close, STDIN_FILENO);
  Report::check(Kernel::call(SYS_openat, AT_FDCWD, nothing, O_RDONLY),
                nothing);  // takes the lowest free number
}

/// A crashed engine would write its memory, and with it the user's document, to wherever the system
/// keeps such images.
void writeNoCoreFile() {
  const rlimit none = {0, 0};
  Report::check(Kernel::call(SYS_prlimit64, 0, RLIMIT_CORE, &none, nullptr), "core limit");
}

/// @param mebibytes 0: as inherited, as is a limit that is lower already.
void limit(int resource, int mebibytes, std::string_view what) {
  rlimit inherited = {};
  Report::check(Kernel::call(SYS_prlimit64, 0, resource, nullptr, &inherited), what);
  const rlim_t wanted = static_cast<rlim_t>(mebibytes) << 20;
  if (mebibytes > 0 && wanted < inherited.rlim_max) {
    const rlimit lowered = {std::min(inherited.rlim_cur, wanted), wanted};
    Report::check(Kernel::call(SYS_prlimit64, 0, resource, &lowered, nullptr), what);
  }
}

void confine(const Options& options) {
  const int pathRules = std::min(PathRules::version(), options.newestPathRules);
  if (pathRules < 1) {
    Report::fail(ENOSYS, "Landlock");
  }
  Report::check(Kernel::call(SYS_chdir, options.folder), options.folder);
  readNothing();
  writeNoCoreFile();
  limit(RLIMIT_DATA, options.memory, "memory limit");
  limit(RLIMIT_FSIZE, options.fileSize, "file size limit");
  Report::check(Kernel::call(SYS_prctl, PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), "no new privileges");
  giveUpRights();
  PathRules::apply(options, pathRules);
  applyCallFilter(options, pathRules);
}

[[noreturn]] void become(char** engine, char** environment) {
  Report::check(Kernel::call(SYS_execve, engine[0], engine, environment), engine[0]);
  Kernel::exit(0);  // not reached: when it does not fail, it does not return
}

[[noreturn]] void run(const Options& options, char** environment) {
  closeOtherDescriptors();
  const pid_t supervisor = options.host ? Supervisor::splitOff(*options.host) : Kernel::parent();
  if (!options.confines) {
    // The program in between must outlive the polite end, or the engine would get no chance to use
    // it.
    Kernel::handle(SIGTERM, SIG_IGN);
    Supervisor::endWith(supervisor);
    become(options.engine, environment);
  }
  Kernel::handle(SIGTERM, SIG_DFL);
  if (options.ownMounts) {
    makeOwnMounts(options);
  }
  Supervisor::endWith(supervisor);
  Report::check(Kernel::call(SYS_fcntl, Report::descriptor, F_SETFD, FD_CLOEXEC), "report");
  confine(options);
  Report::engineStarts();
  become(options.engine, environment);
}

}  // namespace

}  // namespace tolvane::confine

/// Called by the program's first instructions.
extern "C" [[noreturn]] void startHere(long count, char** arguments, char** environment) {
  using namespace tolvane::confine;  // NOLINT(google-build-using-namespace)
  if (count == 4 && std::string_view(arguments[1]) == "--trial") {
    Kernel::exit(Trial::run(arguments[2], arguments[3]));
  }
  run(readOptions(arguments), environment);
}
