#include "cli/console.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace tolvane::Console {

namespace {

std::FILE* results = stdout;  // of the main thread, set before anything is printed

/// Libraries print what they find wrong in a file to the standard output that they know; results
/// go where only this file writes.
void keepResultsApart() noexcept {
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  const int own = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  std::FILE* const stream = own < 0 ? nullptr : ::fdopen(own, "w");
  if (stream != nullptr && nowhere >= 0 && ::dup2(nowhere, STDOUT_FILENO) >= 0) {
    results = stream;
  }
  if (nowhere >= 0) {
    ::close(nowhere);
  }
}

}  // namespace

void claimStreams() noexcept {
  for (const int descriptor : {0, 1, 2}) {
    if (::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) {
      // The lowest free number is the closed one. Read-only, so that lost output is noticed.
      static_cast<void>(::open("/dev/null", O_RDONLY));
    }
  }
  keepResultsApart();
}

void print(std::string_view text) noexcept {
  std::fwrite(text.data(), 1, text.size(), results);
}

void say(std::string_view text) noexcept {
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

bool flushResults() noexcept {
  return std::fflush(results) == 0 && std::ferror(results) == 0;
}

}  // namespace tolvane::Console
