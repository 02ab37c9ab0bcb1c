#include "universal/toolchain/confine/call_filter.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <linux/seccomp.h>
#include <sys/prctl.h>

#include "platform/process/engine_filters.h"
#include "universal/toolchain/confine/report.h"

namespace tolvane::confine {

namespace {

constexpr int signalsAreScoped = 6;  // the version of the path rules from which they hold signals

void load(std::span<const sock_filter> steps) {
  // The kernel copies the program; its interface only lacks the const.
  const sock_fprog program = {static_cast<unsigned short>(steps.size()),
                              const_cast<sock_filter*>(steps.data())};
  Report::check(Kernel::call(SYS_prctl, PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program),
                "system call filter");
}

const EngineFilters::Program& programFor(const Options& options, int pathRules) {
  const EngineFilters::Program* best = nullptr;
  for (const EngineFilters::Program& program : EngineFilters::all) {
    // The programs stand in the order of the versions.
    if (program.officeSockets == (options.sockets != nullptr) &&
        program.refusesMetadata == (options.metadata == Metadata::refused) &&
        program.pathRules <= pathRules) {
      best = &program;
    }
  }
  if (best == nullptr) {
    Report::fail(ENOSYS, "system call filter");
  }
  return *best;
}

/// abort() and raise() signal a thread of their own process with tgkill, so that call cannot go
/// altogether; where the kernel does not keep signals inside, it is left to this process only.
void refuseSignalsToOtherThreads() {
  const auto self = static_cast<unsigned>(Kernel::call(SYS_getpid));
  constexpr unsigned nextWhenEqual = 0;
  const std::array<sock_filter, 6> steps = {{
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_tgkill, nextWhenEqual, 2),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, self, nextWhenEqual, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
  }};
  load(steps);
}

}  // namespace

void applyCallFilter(const Options& options, int pathRules) {
  if (pathRules < signalsAreScoped) {
    refuseSignalsToOtherThreads();
  }
  load(programFor(options, pathRules).steps);
}

}  // namespace tolvane::confine
