#pragma once

#include <functional>
#include <string>

#include "bridge/method_channel.h"

namespace tolvane {

/// The interface's end of the channel: calls the host's methods and hears its events. Main thread
/// only.
class ChannelClient {
 public:
  /// @param event the whole map, "type" and "version" included.
  using EventHandler = std::function<void(const Value::Map& event)>;

  /// @param messenger the interface's end; not owned; outlives this object.
  explicit ChannelClient(BinaryMessenger& messenger) : channel_(messenger, bridgeChannelName) {}

  /// @param arguments a map, or null for none.
  /// @param callback called once with the answer, now or later; never, when the host is gone.
  void call(const std::string& method, const Value& arguments, MethodChannel::Callback callback);

  /// Replaces the one that hears events. It is called until it is replaced, also when this object
  /// is gone.
  void onEvent(EventHandler handler);

 private:
  MethodChannel channel_;
};

}  // namespace tolvane
