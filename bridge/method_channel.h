#pragma once

#include <functional>
#include <memory>
#include <string>

#include "bridge/binary_messenger.h"
#include "bridge/method_codec.h"
#include "engine/primitives/value.h"

namespace tolvane {

/// The one channel between host and interface.
inline constexpr const char* bridgeChannelName = "app.tolvane/bridge.v1";
/// The one method that the host calls on it.
inline constexpr const char* eventMethod = "event";

/// What a call is answered with, now or later. Copies answer the same call, and exactly one of them
/// may. Main thread only, except that it may be handed through other threads.
class MethodReply {
 public:
  explicit MethodReply(BinaryMessenger::Reply sink);

  /// Each throws std::logic_error when the call has been answered already.
  void answer(const ChannelReply& reply) const;
  void success(Value result = {}) const;
  void error(std::string code, std::string message) const;
  void notImplemented() const;

 private:
  std::shared_ptr<BinaryMessenger::Reply> sink_;  // empty function once answered
};

/// Calls of named methods over one end of a messenger. Main thread only.
class MethodChannel {
 public:
  using Handler = std::function<void(const MethodCall& call, const MethodReply& reply)>;
  using Callback = std::function<void(const ChannelReply& reply)>;

  /// @param messenger not owned; outlives this object.
  MethodChannel(BinaryMessenger& messenger, std::string name)
      : messenger_(messenger), name_(std::move(name)) {}

  /// Who answers the other end's calls. Stays with the messenger when this object goes; a message
  /// that is no call is answered as not implemented.
  void setHandler(Handler handler);

  /// @param callback called once with the answer, now or later; a malformed one is an error with
  ///   the code "malformed".
  void invoke(const std::string& method, const Value& arguments, Callback callback) const;

 private:
  BinaryMessenger& messenger_;
  std::string name_;
};

}  // namespace tolvane
