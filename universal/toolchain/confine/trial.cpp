#include "universal/toolchain/confine/trial.h"

#include <fcntl.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "universal/toolchain/confine/kernel.h"

namespace tolvane::confine::Trial {

namespace {

constexpr mode_t ownerOnly = 0600;

int disappointed(std::string_view what) {
  Kernel::call(SYS_write, STDOUT_FILENO, what.data(), what.size());
  return 1;
}

bool canWriteInto(const char* folder) {
  const Kernel::Answer place = Kernel::call(SYS_openat, AT_FDCWD, folder, O_PATH | O_CLOEXEC);
  const Kernel::Answer written =
      Kernel::call(SYS_openat, place, "trial", O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnly);
  return written >= 0 && Kernel::call(SYS_write, written, "x", 1) == 1;
}

}  // namespace

int run(const char* inside, const char* outside) {
  if (!canWriteInto(inside)) {
    return disappointed("the writable folder cannot be written");
  }
  if (Kernel::call(SYS_openat, AT_FDCWD, outside, O_WRONLY | O_CLOEXEC) >= 0) {
    return disappointed("a file outside could be written");
  }
  if (Kernel::call(SYS_openat, AT_FDCWD, outside, O_RDONLY | O_CLOEXEC) >= 0) {
    return disappointed("a file outside could be read");
  }
  if (Kernel::call(SYS_fchmodat, AT_FDCWD, outside, ownerOnly) == 0) {
    return disappointed("permissions outside could be changed");
  }
  if (Kernel::call(SYS_socket, AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0) >= 0) {
    return disappointed("a socket could be made");
  }
  return 0;
}

}  // namespace tolvane::confine::Trial
