#include "cli/host_command.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <string>
#include <string_view>
#include <unistd.h>

#include "bridge/json_rpc_host.h"
#include "cli/host_session.h"

namespace tolvane {

namespace {

/// Cuts what arrives on a descriptor into lines.
class LineReader {
 public:
  explicit LineReader(int descriptor) : descriptor_(descriptor) {}

  /// Reads what is there and calls `line` for each line that is whole.
  /// @return false at the end of input.
  template <typename Line>
  bool read(const Line& line) {
    std::array<char, 65'536> buffer = {};
    const ssize_t count = ::read(descriptor_, buffer.data(), buffer.size());
    if (count < 0) {
      return errno == EINTR || errno == EAGAIN;
    }
    pending_.append(buffer.data(), static_cast<std::size_t>(count));
    std::size_t start = 0;
    for (std::size_t end = pending_.find('\n'); end != std::string::npos;
         end = pending_.find('\n', start)) {
      line(std::string_view(pending_).substr(start, end - start));
      start = end + 1;
    }
    pending_.erase(0, start);
    return count > 0;
  }

 private:
  int descriptor_;  // not owned
  std::string pending_;
};

void writeLine(const std::string& line) {
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputc('\n', stdout);
  std::fflush(stdout);
}

}  // namespace

ExitStatus hostCommand(const Arguments& arguments) {
  if (!arguments.operands.empty()) {
    throw UsageError("The host takes no files; they come over the channel.");
  }
  JsonRpcHost* listening = nullptr;
  HostSession session([&listening] { listening->endOfInput(); });
  JsonRpcHost host(
      session.bridge(), session.messenger(), writeLine, [&session] { session.loop().quit(); });
  listening = &host;
  LineReader input(STDIN_FILENO);
  EventLoop& loop = session.loop();
  loop.watch(STDIN_FILENO, [&] {
    if (!input.read([&host](std::string_view line) { host.receive(line); })) {
      loop.unwatch(STDIN_FILENO);
      host.endOfInput();
    }
  });
  loop.run();
  return ExitStatus::done;
}

}  // namespace tolvane
