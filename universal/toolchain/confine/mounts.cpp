#include "universal/toolchain/confine/mounts.h"

#include <array>
#include <cstdint>
#include <fcntl.h>
#include <sched.h>
#include <string_view>
#include <sys/mount.h>
#include <unistd.h>

#include "universal/toolchain/confine/decimal.h"
#include "universal/toolchain/confine/report.h"

namespace tolvane::confine {

namespace {

/// The kernel's struct mount_attr.
struct MountAttributes {
  std::uint64_t set;
  std::uint64_t cleared;
  std::uint64_t propagation;
  std::uint64_t userNamespace;
};

constexpr std::uint64_t readOnly = 1;            // MOUNT_ATTR_RDONLY
constexpr unsigned andEverythingBelow = 0x8000;  // AT_RECURSIVE

void writeFile(const char* path, std::string_view text) {
  const Kernel::Answer file = Kernel::call(SYS_openat, AT_FDCWD, path, O_WRONLY | O_CLOEXEC);
  Report::check(file, path);
  Report::check(Kernel::call(SYS_write, file, text.data(), text.size()), path);
  Kernel::call(SYS_close, file);
}

/// Users or groups of a new namespace: the one that we are, and no other.
void mapToItself(const char* map, unsigned number) {
  const Decimal digits(number);
  std::array<char, 32> line = {};  // two numbers of ten digits, and "1"
  std::size_t length = 0;
  for (const std::string_view part : {digits.text(), {" "}, digits.text(), {" 1"}}) {
    for (const char character : part) {
      line[length++] = character;
    }
  }
  writeFile(map, {line.data(), length});
}

/// An ordinary user may make mounts only where he rules: in a user namespace, in which he stays who
/// he is.
void enterNamespaces() {
  const auto user = static_cast<uid_t>(Kernel::call(SYS_geteuid));
  const auto group = static_cast<gid_t>(Kernel::call(SYS_getegid));
  if (user == 0) {
    Report::check(Kernel::call(SYS_unshare, CLONE_NEWNS), "mount namespace");
    return;
  }
  Report::check(Kernel::call(SYS_unshare, CLONE_NEWNS | CLONE_NEWUSER), "user namespace");
  writeFile("/proc/self/setgroups", "deny");
  mapToItself("/proc/self/gid_map", group);
  mapToItself("/proc/self/uid_map", user);
}

bool exists(const char* path) {
  return path != nullptr && Kernel::call(SYS_faccessat, AT_FDCWD, path, F_OK) == 0;
}

void bind(const char* source, const char* target) {
  Report::check(Kernel::call(SYS_mount, source, target, nullptr, MS_BIND | MS_REC, nullptr),
                target);
}

void setAttributes(const char* path, unsigned flags, MountAttributes attributes) {
  Report::check(
      Kernel::call(SYS_mount_setattr, AT_FDCWD, path, flags, &attributes, sizeof attributes), path);
}

void makeWritable(const char* path) {
  setAttributes(path, 0, {0, readOnly, 0, 0});
}

}  // namespace

void makeOwnMounts(const Options& options) {
  enterNamespaces();
  Report::check(Kernel::call(SYS_mount, nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr),
                "private mounts");
  // A folder that is not there cannot be written anyway.
  const bool hasRoot = exists(options.root);
  const bool hasSockets = exists(options.sockets);
  if (hasRoot) {
    bind(options.root, options.root);
  }
  if (hasSockets) {
    bind(options.sockets, options.sockets);
  }
  setAttributes("/", andEverythingBelow, {readOnly, 0, 0, 0});
  if (hasRoot) {
    makeWritable(options.root);
  }
  if (hasSockets) {
    makeWritable(options.sockets);
  }
  if (hasSockets && options.cover != nullptr) {
    bind(options.sockets, options.cover);
    makeWritable(options.cover);
  }
}

}  // namespace tolvane::confine
