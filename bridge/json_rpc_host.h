#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "bridge/bridge.h"
#include "bridge/channel_client.h"

namespace tolvane {

/// The channel for programs that speak JSON-RPC 2.0, one message a line: requests call the host's
/// methods, events are notifications named "event". "host.select" with "paths" takes in files as if
/// they were dropped and replies null; the outcome is the event "selectionResolved". "host.quit"
/// cancels a running job, waits for the worker and replies null. Main thread only.
class JsonRpcHost {
 public:
  /// @param line one message without a line end.
  using Output = std::function<void(const std::string& line)>;

  /// @param bridge not owned; outlives this object.
  /// @param messenger the interface's end of the bridge's messenger; not owned; outlives this
  ///   object.
  /// @param finished called once, after the last line, when the host has quit.
  JsonRpcHost(Bridge& bridge,
              BinaryMessenger& messenger,
              Output output,
              std::function<void()> finished);
  ~JsonRpcHost() = default;
  JsonRpcHost(const JsonRpcHost&) = delete;
  JsonRpcHost& operator=(const JsonRpcHost&) = delete;

  /// Takes one line without its end. Never throws for what is in it: a line that is no request is
  /// answered with an error, whose "data" says so when it is too large or nested too deeply.
  /// Ignored once the host is asked to quit.
  void receive(std::string_view line);

  /// The other side has gone: a quit without a reply.
  void endOfInput();

 private:
  /// What replies that come later need of this object.
  struct Conversation {
    Output output;
    std::function<void()> finished;
    bool isQuitting = false;
  };

  /// @param id of the request that is answered; nullopt for none.
  void select(const std::optional<Value>& id, const Value& params);
  void quit(const std::optional<Value>& id);

  Bridge& bridge_;
  ChannelClient client_;
  std::shared_ptr<Conversation> conversation_;
};

}  // namespace tolvane
