#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "bridge/bridge.h"
#include "bridge/channel_client.h"
#include "cli/exit_status.h"
#include "cli/interrupt.h"
#include "platform/threads/event_loop.h"

namespace tolvane {

/// A host of the command line's own: loop, bridge without a desktop, and the interface's end of the
/// channel. Main thread only.
class HostSession {
 public:
  /// @param interrupted called in the loop at the first Ctrl-C; absent: Ctrl-C ends the process.
  explicit HostSession(std::function<void()> interrupted = {});

  [[nodiscard]] EventLoop& loop() { return loop_; }
  [[nodiscard]] Bridge& bridge() { return bridge_; }
  /// The interface's end, for those who speak on the channel themselves.
  [[nodiscard]] BinaryMessenger& messenger() { return messengers_.interface(); }

  /// Ends the process with `status` if it is still there after `limit`, whatever its threads are
  /// doing. Needs `interrupted`.
  void endWithin(EndingSignals::Duration limit, ExitStatus status);

  /// Opens the stream of events.
  void listen(ChannelClient::EventHandler handler);

  /// Calls a method whose answer does not matter unless it is an error.
  void call(const std::string& method,
            const Value& arguments,
            const std::function<void(const ChannelError& error)>& failed = {});

 private:
  EventLoop loop_;
  std::unique_ptr<Interrupt>
      interrupt_;  // before the bridge, whose worker must not take the signals
  MessengerPair messengers_;
  Bridge bridge_;
  ChannelClient client_;
};

}  // namespace tolvane
