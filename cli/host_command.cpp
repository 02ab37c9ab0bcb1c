#include "cli/host_command.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <string>
#include <string_view>
#include <unistd.h>

#include "bridge/json_rpc_host.h"
#include "cli/console.h"
#include "cli/host_session.h"
#include "engine/json/value_json.h"

namespace tolvane {

namespace {

/// Of longer lines, only the beginning is kept, which is refused for its length.
constexpr std::size_t maxLine = ValueJson::maxText + 1;

/// What a running job has for its end once nobody listens any more; what the worker does without a
/// job is reading files that were handed in last.
constexpr EndingSignals::Duration jobsLimit(800);
constexpr EndingSignals::Duration readingLimit = std::chrono::minutes(1);

/// Cuts what arrives on a descriptor into lines.
class LineReader {
 public:
  explicit LineReader(int descriptor) : descriptor_(descriptor) {}

  /// Reads what is there and calls `line` for each line that is whole; at the end of input also for
  /// a last one without a line end.
  /// @return false at the end of input.
  template <typename Line>
  bool read(const Line& line) {
    std::array<char, 65'536> buffer = {};
    const ssize_t count = ::read(descriptor_, buffer.data(), buffer.size());
    if (count < 0) {
      return errno == EINTR || errno == EAGAIN;
    }
    std::string_view arrived(buffer.data(), static_cast<std::size_t>(count));
    for (std::size_t end = arrived.find('\n'); end != std::string_view::npos;
         end = arrived.find('\n')) {
      keep(arrived.substr(0, end));
      arrived.remove_prefix(end + 1);
      finish(line);
    }
    keep(arrived);
    if (count == 0 && !pending_.empty()) {
      finish(line);
    }
    return count > 0;
  }

 private:
  void keep(std::string_view piece) { pending_ += piece.substr(0, maxLine - pending_.size()); }

  template <typename Line>
  void finish(const Line& line) {
    line(std::string_view(pending_));
    pending_.clear();
  }

  int descriptor_;  // not owned
  std::string pending_;
};

void writeLine(const std::string& line) {
  Console::print(line + "\n");
  // A reader that has gone is noticed at the end.
  static_cast<void>(Console::flushResults());
}

}  // namespace

ExitStatus hostCommand(const Arguments& arguments) {
  if (!arguments.operands.empty()) {
    throw UsageError("The host takes no files; they come over the channel.");
  }
  JsonRpcHost* listening = nullptr;
  ExitStatus status = ExitStatus::done;
  HostSession session([&listening, &status] {
    status = ExitStatus::cancelled;
    listening->endOfInput();
  });
  JsonRpcHost host(
      session.bridge(), session.messenger(), writeLine, [&session] { session.loop().quit(); });
  listening = &host;
  LineReader input(STDIN_FILENO);
  EventLoop& loop = session.loop();
  loop.watch(STDIN_FILENO, [&] {
    if (!input.read([&host](std::string_view line) { host.receive(line); })) {
      loop.unwatch(STDIN_FILENO);
      session.endWithin(session.bridge().hasActiveJob() ? jobsLimit : readingLimit,
                        ExitStatus::cancelled);
      host.endOfInput();
    }
  });
  loop.run();
  return status;
}

}  // namespace tolvane
