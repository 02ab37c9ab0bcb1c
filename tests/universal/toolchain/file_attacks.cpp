#include <array>
#include <cstdio>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "tests/universal/toolchain/attack.h"

namespace tolvane::attacks {

namespace {

using enum Unconfined;

bool opens(const std::string& path, int flags) {
  return ::open(path.c_str(), flags, 0600) >= 0;
}

std::string reopened(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

int readable(const Ground& ground) {
  return ::open(ground.target().c_str(), O_RDONLY);
}

std::string insideFile(const Ground& ground) {
  const std::string path = ground.inside + "/mine";
  ::close(::open(path.c_str(), O_WRONLY | O_CREAT, 0600));
  return path;
}

bool reopensDescriptors(const Ground&) {
  struct stat null = {};
  ::stat("/dev/null", &null);
  for (int number = 0; number < 256; ++number) {
    struct stat status = {};
    if (::fstat(number, &status) == 0 && status.st_rdev != null.st_rdev &&
        opens(reopened(number), O_WRONLY)) {
      return true;
    }
  }
  return false;
}

bool hasInheritedDescriptors(const Ground&) {
  for (int number = 3; number < 1024; ++number) {
    if (::fcntl(number, F_GETFD) >= 0) {
      return true;
    }
  }
  return false;
}

bool typesIntoTerminal(const Ground& ground) {
  constexpr unsigned long typeIn = 0x5412;  // TIOCSTI
  const int terminal = ::open(ground.terminal.c_str(), O_RDONLY);
  return terminal >= 0 && ::ioctl(terminal, typeIn, "x") == 0;
}

bool setsFlags(const Ground& ground) {
  constexpr unsigned long setFlags = 0x40086602;  // FS_IOC_SETFLAGS
  long noDump = 0x40;
  return ::ioctl(readable(ground), setFlags, &noDump) == 0;
}

bool setsGeneration(const Ground& ground, unsigned long request) {
  long generation = 1;
  return ::ioctl(readable(ground), request, &generation) == 0;
}

bool sealsForever(const Ground& ground) {
  constexpr unsigned long enableVerity = 0x40806685;  // FS_IOC_ENABLE_VERITY
  // Version, algorithm (SHA-256), block size; no salt, no signature.
  std::array<unsigned, 32> seal = {1, 1, 4096};
  return ::ioctl(readable(ground), enableVerity, seal.data()) == 0;
}

bool setsFlagsByNewCall(const Ground& ground) {
  constexpr long fileSetattr = 469;
  std::array<unsigned long, 3> noChange = {};
  return ::syscall(
             fileSetattr, AT_FDCWD, ground.target().c_str(), noChange.data(), sizeof noChange, 0) ==
         0;
}

bool setsAttributeByNewCall(const Ground& ground) {
  constexpr long setxattrat = 463;
  struct {
    const char* value;
    unsigned size;
    unsigned flags;
  } arguments = {"x", 1, 0};
  return ::syscall(setxattrat,
                   AT_FDCWD,
                   ground.target().c_str(),
                   0,
                   "user.tolvane",
                   &arguments,
                   sizeof arguments) == 0;
}

bool changesModeByNewCall(const Ground& ground) {
  constexpr long fchmodat2 = 452;
  const int place = ::open(ground.target().c_str(), O_PATH);
  return ::syscall(fchmodat2, place, "", 0640, AT_EMPTY_PATH) == 0;
}

bool usesHandle(const Ground& ground) {
  struct stat status = {};
  unsigned generation = 0;
  constexpr unsigned long askGeneration = 0x80087601;  // FS_IOC_GETVERSION
  const int target = readable(ground);
  ::fstat(target, &status);
  ::ioctl(target, askGeneration, &generation);
  struct {
    unsigned size = 8;
    int type = 1;  // inode and generation, 32 bits each
    unsigned inode = 0;
    unsigned inodeGeneration = 0;
  } handle;
  handle.inode = static_cast<unsigned>(status.st_ino);
  handle.inodeGeneration = generation;
  return ::syscall(SYS_open_by_handle_at, target, &handle, O_WRONLY) >= 0;
}

}  // namespace

const std::vector<Attack>& onFiles() {
  static const std::vector<Attack> table = {
      {"write", succeeds, [](const Ground& g) { return opens(g.target(), O_WRONLY); }},
      {"open and truncate",
       succeeds,
       [](const Ground& g) { return opens(g.target(), O_RDONLY | O_TRUNC); }},
      {"truncate",
       succeeds,
       [](const Ground& g) { return ::truncate(g.target().c_str(), 0) == 0; }},
      {"create",
       succeeds,
       [](const Ground& g) { return opens(g.outside + "/new", O_WRONLY | O_CREAT); }},
      {"unnamed file",
       succeeds,
       [](const Ground& g) { return opens(g.outside, O_TMPFILE | O_WRONLY); }},
      {"make folder",
       succeeds,
       [](const Ground& g) { return ::mkdir((g.outside + "/folder").c_str(), 0700) == 0; }},
      {"symbolic link",
       succeeds,
       [](const Ground& g) { return ::symlink("x", (g.outside + "/symbolic").c_str()) == 0; }},
      {"rename",
       succeeds,
       [](const Ground& g) {
         return ::rename((g.outside + "/spare").c_str(), (g.outside + "/renamed").c_str()) == 0;
       }},
      {"move out",
       succeeds,
       [](const Ground& g) {
         return ::rename(insideFile(g).c_str(), (g.outside + "/moved").c_str()) == 0;
       }},
      {"move in",
       succeeds,
       [](const Ground& g) {
         return ::rename((g.outside + "/stolen").c_str(), (g.inside + "/stolen").c_str()) == 0;
       }},
      {"hard link out",
       succeeds,
       [](const Ground& g) {
         return ::link(insideFile(g).c_str(), (g.outside + "/linked").c_str()) == 0;
       }},
      {"hard link in",
       succeeds,
       [](const Ground& g) {
         return ::link(g.target().c_str(), (g.inside + "/linked").c_str()) == 0;
       }},
      {"remove",
       succeeds,
       [](const Ground& g) { return ::unlink((g.outside + "/doomed").c_str()) == 0; }},
      {"FIFO",
       succeeds,
       [](const Ground& g) { return opens(g.outside + "/fifo", O_WRONLY | O_NONBLOCK); }},
      {"shared memory file",
       succeeds,
       [](const Ground&) {
         const std::string file = "/dev/shm/tolvane-attack-" + std::to_string(::getpid());
         return opens(file, O_WRONLY | O_CREAT) && ::unlink(file.c_str()) == 0;
       }},
      {"read", succeeds, [](const Ground& g) { return opens(g.outside + "/secret", O_RDONLY); }},
      {"read through a link",
       succeeds,
       [](const Ground& g) {
         const std::string link = g.inside + "/link-to-secret";
         return ::symlink((g.outside + "/secret").c_str(), link.c_str()) == 0 &&
                opens(link, O_RDONLY);
       }},
      {"list a folder",
       succeeds,
       [](const Ground& g) { return opens(g.outside, O_RDONLY | O_DIRECTORY); }},
      {"read who the users are",
       succeeds,
       [](const Ground&) { return opens("/etc/passwd", O_RDONLY); }},
      {"read the host's environment",
       succeeds,
       [](const Ground& g) {
         return opens("/proc/" + std::to_string(g.host) + "/environ", O_RDONLY);
       }},
      {"reopen descriptors", succeeds, reopensDescriptors},
      {"inherited descriptors", succeeds, hasInheritedDescriptors},
      {"the host's root",
       succeeds,
       [](const Ground& g) {
         return opens("/proc/" + std::to_string(g.host) + "/root" + g.target(), O_WRONLY);
       }},
      {"write to terminal",
       succeeds,
       [](const Ground& g) { return opens(g.terminal, O_WRONLY | O_NOCTTY); }},
      {"own terminal",
       dependsOnMachine,
       [](const Ground&) { return opens("/dev/tty", O_RDONLY) || ::isatty(STDIN_FILENO) == 1; }},
      {"type into terminal", dependsOnMachine, typesIntoTerminal},
      {"device file",
       succeedsAsRoot,
       [](const Ground& g) {
         return ::mknod((g.inside + "/device").c_str(), S_IFBLK | 0600, 0) == 0;
       }},
      {"file handle", dependsOnMachine, usesHandle},
  };
  return table;
}

const std::vector<Attack>& onMetadata() {
  static const std::vector<Attack> table = {
      {"chmod", succeeds, [](const Ground& g) { return ::chmod(g.target().c_str(), 0640) == 0; }},
      {"fchmod", succeeds, [](const Ground& g) { return ::fchmod(readable(g), 0640) == 0; }},
      {"chmod through a path descriptor",
       succeeds,
       [](const Ground& g) {
         return ::chmod(reopened(::open(g.target().c_str(), O_PATH)).c_str(), 0640) == 0;
       }},
      {"fchmodat2", dependsOnMachine, changesModeByNewCall},
      {"chmod of standard input",
       succeedsAsRoot,
       [](const Ground&) { return ::fchmod(STDIN_FILENO, 0666) == 0; }},
      {"chown",
       succeeds,
       [](const Ground& g) { return ::chown(g.target().c_str(), ::geteuid(), ::getegid()) == 0; }},
      {"fchown",
       succeeds,
       [](const Ground& g) { return ::fchown(readable(g), ::geteuid(), ::getegid()) == 0; }},
      {"utimes",
       succeeds,
       [](const Ground& g) { return ::utimensat(AT_FDCWD, g.target().c_str(), nullptr, 0) == 0; }},
      {"futimes", succeeds, [](const Ground& g) { return ::futimens(readable(g), nullptr) == 0; }},
      {"setxattr",
       dependsOnMachine,
       [](const Ground& g) {
         return ::setxattr(g.target().c_str(), "user.tolvane", "x", 1, 0) == 0;
       }},
      {"fsetxattr",
       dependsOnMachine,
       [](const Ground& g) { return ::fsetxattr(readable(g), "user.tolvane", "x", 1, 0) == 0; }},
      {"setxattrat", dependsOnMachine, setsAttributeByNewCall},
      {"inode flags", dependsOnMachine, setsFlags},
      {"inode generation",
       dependsOnMachine,
       [](const Ground& g) { return setsGeneration(g, 0x40087602); }},  // FS_IOC_SETVERSION
      {"inode generation, ext4",
       dependsOnMachine,
       [](const Ground& g) { return setsGeneration(g, 0x40086604); }},  // EXT4_IOC_SETVERSION
      {"seal", dependsOnMachine, sealsForever},
      {"file_setattr", dependsOnMachine, setsFlagsByNewCall},
  };
  return table;
}

}  // namespace tolvane::attacks
