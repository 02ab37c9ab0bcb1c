#include "universal/toolchain/confine/mounts.h"

#include <cstdint>
#include <fcntl.h>
#include <sched.h>
#include <string>
#include <string_view>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <unistd.h>

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
  const int file = ::open(path, O_WRONLY | O_CLOEXEC);
  Report::check(file, path);
  Report::check(::write(file, text.data(), text.size()), path);
  ::close(file);
}

/// An ordinary user may make mounts only where he rules: in a user namespace, in which he stays who
/// he is.
void enterNamespaces() {
  const uid_t user = ::geteuid();
  const gid_t group = ::getegid();
  if (user == 0) {
    Report::check(::unshare(CLONE_NEWNS), "mount namespace");
    return;
  }
  Report::check(::unshare(CLONE_NEWNS | CLONE_NEWUSER), "user namespace");
  writeFile("/proc/self/setgroups", "deny");
  writeFile("/proc/self/gid_map", std::to_string(group) + " " + std::to_string(group) + " 1");
  writeFile("/proc/self/uid_map", std::to_string(user) + " " + std::to_string(user) + " 1");
}

bool exists(const std::string& path) {
  return !path.empty() && ::access(path.c_str(), F_OK) == 0;
}

void bind(const std::string& source, const std::string& target) {
  Report::check(::mount(source.c_str(), target.c_str(), nullptr, MS_BIND | MS_REC, nullptr),
                target);
}

void setAttributes(const std::string& path, unsigned flags, MountAttributes attributes) {
  Report::check(
      ::syscall(SYS_mount_setattr, AT_FDCWD, path.c_str(), flags, &attributes, sizeof attributes),
      "mount_setattr " + path);
}

void makeWritable(const std::string& path) {
  setAttributes(path, 0, {0, readOnly, 0, 0});
}

}  // namespace

void makeOwnMounts(const Options& options) {
  enterNamespaces();
  Report::check(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "private mounts");
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
  if (hasSockets && !options.cover.empty()) {
    bind(options.sockets, options.cover);
    makeWritable(options.cover);
  }
}

}  // namespace tolvane::confine
