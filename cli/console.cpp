#include "cli/console.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>

namespace tolvane::Console {

void claimStreams() noexcept {
  for (const int descriptor : {0, 1, 2}) {
    if (::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) {
      // The lowest free number is the closed one. Read-only, so that lost output is noticed.
      static_cast<void>(::open("/dev/null", O_RDONLY));
    }
  }
}

void print(std::string_view text) noexcept {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

void say(std::string_view text) noexcept {
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

bool flushResults() noexcept {
  return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

}  // namespace tolvane::Console
