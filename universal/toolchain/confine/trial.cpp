#include "universal/toolchain/confine/trial.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tolvane::confine::Trial {

namespace {

constexpr mode_t ownerOnly = 0600;

bool canWriteInto(const char* folder) {
  const std::string file = std::string(folder) + "/trial";
  const int written = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnly);
  return written >= 0 && ::write(written, "x", 1) == 1;
}

}  // namespace

int run(const char* inside, const char* outside) {
  if (!canWriteInto(inside)) {
    std::perror("the writable folder cannot be written");
    return 1;
  }
  if (::open(outside, O_WRONLY | O_CLOEXEC) >= 0) {
    std::puts("a file outside could be written");
    return 1;
  }
  if (::chmod(outside, ownerOnly) == 0) {
    std::puts("permissions outside could be changed");
    return 1;
  }
  if (::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0) >= 0) {
    std::puts("a socket could be made");
    return 1;
  }
  return 0;
}

}  // namespace tolvane::confine::Trial
