// Runs while the system is built: writes the system-call filters of engines as ready-made programs,
// because compiling them with the library at run time would cost every engine run a millisecond.
//
// usage: make-engine-filters FILE

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <linux/filter.h>
#include <memory>
#include <sched.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include <seccomp.h>

namespace {

/// Which engine a program is for, and what the kernel's path rules leave to it.
struct Variant {
  bool officeSockets =
      false;          // sockets inside the machine may be made, as the office suite needs them
  int pathRules = 1;  // lowest version of Landlock that it goes with
  bool refusesMetadata =
      false;  // permissions, owners, times and attributes cannot be changed anywhere
};

constexpr int truncatesAreRuled = 3;  // the version of Landlock from which it judges truncation
constexpr int signalsAreScoped = 6;   // ... from which it keeps signals inside

struct Release {
  void operator()(void* filter) const { seccomp_release(filter); }
};
using Filter = std::unique_ptr<void, Release>;

struct Refusal {
  int error;
  std::vector<const char*> calls;
};

/// Refused whatever their arguments are. ENOSYS where engines try the call and go another way.
const std::vector<Refusal>& refusedToAll() {
  static const std::vector<Refusal> table = {
      {ENOSYS, {"io_uring_setup", "io_uring_enter", "io_uring_register"}},
      {ENOSYS, {"clone3"}},  // its flags lie in memory, where a filter cannot look
      {EPERM, {"ptrace", "process_vm_readv", "process_vm_writev", "process_madvise"}},
      {EPERM, {"process_mrelease", "pidfd_getfd", "kcmp", "perf_event_open"}},
      {EPERM, {"migrate_pages", "move_pages"}},
      {EPERM, {"setsid", "setpgid"}},  // so that nothing leaves the group that is stopped
      {EPERM, {"shmget", "shmat", "shmctl", "msgget", "msgsnd", "msgrcv", "msgctl"}},
      {EPERM, {"semget", "semop", "semtimedop", "semctl", "mq_open", "mq_unlink"}},
      {EPERM, {"add_key", "request_key", "keyctl"}},
      {EPERM, {"unshare", "setns", "mount", "umount2", "pivot_root", "chroot", "move_mount"}},
      {EPERM, {"open_tree", "fsopen", "fsconfig", "fsmount", "fspick", "mount_setattr"}},
      {EPERM, {"swapon", "swapoff", "open_by_handle_at", "name_to_handle_at", "fanotify_init"}},
      {EPERM, {"bpf", "userfaultfd", "init_module", "finit_module", "delete_module"}},
      {EPERM, {"kexec_load", "kexec_file_load", "reboot", "iopl", "ioperm", "acct"}},
      {EPERM, {"quotactl", "quotactl_fd", "syslog", "settimeofday", "clock_settime"}},
      {EPERM, {"clock_adjtime", "adjtimex", "sethostname", "setdomainname", "vhangup"}},
      {EPERM, {"uselib"}},
  };
  return table;
}

const std::vector<Refusal>& refusedMetadata() {
  static const std::vector<Refusal> table = {
      {EPERM, {"chmod", "fchmod", "fchmodat", "chown", "lchown", "fchown", "fchownat"}},
      {EPERM, {"utime", "utimes", "futimesat", "utimensat"}},
      {EPERM, {"setxattr", "lsetxattr", "fsetxattr"}},
      {EPERM, {"removexattr", "lremovexattr", "fremovexattr"}},
  };
  return table;
}

// Calls that are newer than the library's names. Their numbers are the same on every architecture.
constexpr int fchmodat2 = 452;
constexpr int setxattrat = 463;
constexpr int removexattrat = 466;
constexpr int openTreeAttr = 467;
constexpr int fileSetattr = 469;

void check(int result, const std::string& what) {
  // -EDOM: this architecture has no such call.
  if (result != 0 && result != -EDOM) {
    throw std::runtime_error("cannot filter " + what);
  }
}

int numberOf(const char* call) {
  const int number = seccomp_syscall_resolve_name(call);
  if (number == __NR_SCMP_ERROR) {
    throw std::runtime_error(std::string("unknown system call ") + call);
  }
  return number;
}

void refuse(const Filter& filter,
            int error,
            const char* call,
            const std::vector<scmp_arg_cmp>& when = {}) {
  check(seccomp_rule_add_array(filter.get(),
                               SCMP_ACT_ERRNO(static_cast<unsigned>(error)),
                               numberOf(call),
                               static_cast<unsigned>(when.size()),
                               when.data()),
        call);
}

void refuseAll(const Filter& filter, const std::vector<Refusal>& table) {
  for (const Refusal& refusal : table) {
    for (const char* call : refusal.calls) {
      refuse(filter, refusal.error, call);
    }
  }
}

void refuseNumber(const Filter& filter, int number) {
  check(seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(ENOSYS), number, 0), std::to_string(number));
}

scmp_arg_cmp isNot(unsigned argument, scmp_datum_t value) {
  return {argument, SCMP_CMP_NE, value, 0};
}

scmp_arg_cmp masked(unsigned argument, scmp_datum_t mask, scmp_datum_t value) {
  return {argument, SCMP_CMP_MASKED_EQ, mask, value};
}

void refuseNetwork(const Filter& filter, bool officeSockets) {
  constexpr scmp_datum_t typeMask = 0xF;  // the rest of the argument are flags
  if (officeSockets) {
    refuse(filter, EPERM, "socket", {isNot(0, AF_UNIX)});
    refuse(filter, EPERM, "socket", {masked(1, typeMask, SOCK_DGRAM)});
    refuse(filter, EPERM, "socket", {masked(1, typeMask, SOCK_RAW)});
    // What a suite without a session bus or a display sees, so it goes on.
    refuse(filter, ECONNREFUSED, "connect");
  } else {
    for (const char* call : {"socket", "connect", "bind", "listen"}) {
      refuse(filter, EPERM, call);
    }
  }
  refuse(filter, EPERM, "socketpair", {isNot(0, AF_UNIX)});
  // Half of a datagram pair can still send to the name of an outside socket.
  refuse(filter, EPERM, "socketpair", {masked(1, typeMask, SOCK_DGRAM)});
  refuse(filter, EPERM, "socketpair", {masked(1, typeMask, SOCK_RAW)});
}

void refuseRequests(const Filter& filter, const std::vector<scmp_datum_t>& requests) {
  for (const scmp_datum_t request : requests) {
    refuse(filter, EPERM, "ioctl", {masked(1, 0xFFFFFFFF, request)});
  }
}

/// Zero is the caller himself only where one process is meant. Of users, it is all that he runs.
void refusePrioritiesOfOthers(const Filter& filter) {
  constexpr scmp_datum_t diskPriorityOfProcess = 1;  // IOPRIO_WHO_PROCESS
  refuse(filter, EPERM, "setpriority", {isNot(0, PRIO_PROCESS)});
  refuse(filter, EPERM, "setpriority", {isNot(1, 0)});
  refuse(filter, EPERM, "ioprio_set", {isNot(0, diskPriorityOfProcess)});
  refuse(filter, EPERM, "ioprio_set", {isNot(1, 0)});
}

void refuseReachingOthers(const Filter& filter) {
  refuse(filter, EPERM, "prlimit64", {isNot(0, 0), isNot(2, 0)});
  refusePrioritiesOfOthers(filter);
  for (const char* call :
       {"sched_setaffinity", "sched_setscheduler", "sched_setparam", "sched_setattr"}) {
    refuse(filter, EPERM, call, {isNot(0, 0)});
  }
  // A file's owner is sent SIGIO by the kernel itself.
  constexpr scmp_datum_t setOwner = 8;     // F_SETOWN
  constexpr scmp_datum_t setOwnerEx = 15;  // F_SETOWN_EX
  for (const scmp_datum_t command : {setOwner, setOwnerEx}) {
    refuse(filter, EPERM, "fcntl", {masked(1, 0xFFFFFFFF, command)});
  }
  constexpr scmp_datum_t setSocketOwner = 0x8901;  // FIOSETOWN
  constexpr scmp_datum_t setSocketGroup = 0x8902;  // SIOCSPGRP
  refuseRequests(filter, {setSocketOwner, setSocketGroup});
  refuse(filter, EPERM, "clone", {masked(0, CLONE_NEWUSER, CLONE_NEWUSER)});
}

void refuseDeviceRequests(const Filter& filter) {
  constexpr scmp_datum_t typeIntoTerminal = 0x5412;    // TIOCSTI
  constexpr scmp_datum_t consoleSelection = 0x541C;    // TIOCLINUX
  constexpr scmp_datum_t setFlags = 0x40086602;        // FS_IOC_SETFLAGS, 64 bits
  constexpr scmp_datum_t setFlagsNarrow = 0x40046602;  // FS_IOC32_SETFLAGS
  constexpr scmp_datum_t setAttributes = 0x401C5820;   // FS_IOC_FSSETXATTR
  refuseRequests(filter,
                 {typeIntoTerminal, consoleSelection, setFlags, setFlagsNarrow, setAttributes});
  refuseNumber(filter, fileSetattr);
}

/// What a file's owner may ask of it even through a descriptor that only reads.
void refuseMetadataRequests(const Filter& filter) {
  constexpr scmp_datum_t setGeneration = 0x40087602;      // FS_IOC_SETVERSION, 64 bits
  constexpr scmp_datum_t setGenerationExt4 = 0x40086604;  // EXT4_IOC_SETVERSION, 64 bits
  constexpr scmp_datum_t sealForever = 0x40806685;        // FS_IOC_ENABLE_VERITY
  constexpr scmp_datum_t encryptFolder = 0x800C6613;      // FS_IOC_SET_ENCRYPTION_POLICY
  refuseRequests(filter, {setGeneration, setGenerationExt4, sealForever, encryptFolder});
}

void refuseTruncation(const Filter& filter) {
  constexpr scmp_datum_t mask = O_ACCMODE | O_TRUNC;
  constexpr scmp_datum_t readAndTruncate = O_RDONLY | O_TRUNC;
  refuse(filter, EPERM, "truncate");
  refuse(filter, EPERM, "open", {masked(1, mask, readAndTruncate)});
  refuse(filter, EPERM, "openat", {masked(2, mask, readAndTruncate)});
  refuse(filter, ENOSYS, "openat2");  // its flags lie in memory
}

Filter build(const Variant& variant) {
  Filter filter(seccomp_init(SCMP_ACT_ALLOW));
  if (filter == nullptr) {
    throw std::runtime_error("no filter");
  }
  check(seccomp_attr_set(filter.get(), SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_KILL_PROCESS), "arch");
  check(seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_OPTIMIZE, 2), "optimization");
  refuseNetwork(filter, variant.officeSockets);
  refuseAll(filter, refusedToAll());
  refuseNumber(filter, openTreeAttr);
  refuseReachingOthers(filter);
  refuseDeviceRequests(filter);
  if (variant.pathRules < truncatesAreRuled) {
    refuseTruncation(filter);
  }
  if (variant.pathRules < signalsAreScoped) {
    for (const char* call :
         {"kill", "tkill", "pidfd_send_signal", "rt_sigqueueinfo", "rt_tgsigqueueinfo"}) {
      refuse(filter, EPERM, call);
    }
  }
  if (variant.refusesMetadata) {
    refuseAll(filter, refusedMetadata());
    refuseMetadataRequests(filter);
    for (const int number : {fchmodat2, setxattrat, removexattrat}) {
      refuseNumber(filter, number);
    }
  }
  return filter;
}

std::vector<sock_filter> programOf(const Filter& filter) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
  if (file == nullptr || seccomp_export_bpf(filter.get(), ::fileno(file.get())) != 0) {
    throw std::runtime_error("cannot export a filter");
  }
  std::rewind(file.get());
  std::vector<sock_filter> program;
  for (sock_filter step = {}; std::fread(&step, sizeof step, 1, file.get()) == 1;) {
    program.push_back(step);
  }
  return program;
}

void writeProgram(std::ostream& out,
                  const std::string& name,
                  const std::vector<sock_filter>& program) {
  out << "inline constexpr std::array<sock_filter, " << program.size() << "> " << name << " = {{\n";
  for (const sock_filter& step : program) {
    out << "    {" << step.code << ", " << int{step.jt} << ", " << int{step.jf} << ", " << step.k
        << "u},\n";
  }
  out << "}};\n\n";
}

std::vector<Variant> everyVariant() {
  std::vector<Variant> variants;
  for (const bool officeSockets : {false, true}) {
    for (const int pathRules : {1, truncatesAreRuled, signalsAreScoped}) {
      for (const bool refusesMetadata : {false, true}) {
        variants.push_back({officeSockets, pathRules, refusesMetadata});
      }
    }
  }
  return variants;
}

void writeAll(std::ostream& out) {
  std::string table;
  int index = 0;
  out << "// Made by make-engine-filters.\n#pragma once\n\n#include <array>\n"
         "#include <linux/filter.h>\n#include <span>\n\nnamespace tolvane::EngineFilters {\n\n";
  for (const Variant& variant : everyVariant()) {
    const std::string name = "program" + std::to_string(index++);
    writeProgram(out, name, programOf(build(variant)));
    table += std::string("    {") + (variant.officeSockets ? "true" : "false") + ", " +
             std::to_string(variant.pathRules) + ", " +
             (variant.refusesMetadata ? "true" : "false") + ", " + name + "},\n";
  }
  out << "struct Program {\n  bool officeSockets;\n  int pathRules;\n  bool refusesMetadata;\n"
         "  std::span<const sock_filter> steps;\n};\n\ninline constexpr std::array<Program, "
      << index << "> all = {{\n"
      << table << "}};\n\n}  // namespace tolvane::EngineFilters\n";
}

}  // namespace

int main(int count, char** arguments) try {
  if (count != 2) {
    throw std::runtime_error("usage: make-engine-filters FILE");
  }
  std::ofstream out(arguments[1]);
  writeAll(out);
  out.close();
  if (!out) {
    throw std::runtime_error(std::string("cannot write ") + arguments[1]);
  }
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::cerr << "make-engine-filters: " << error.what() << '\n';
  return EXIT_FAILURE;
}
