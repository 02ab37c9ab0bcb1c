#pragma once

#include <string_view>

#include "bridge/method_channel.h"
#include "engine/primitives/value.h"

namespace tolvane {

/// What the host tells the interface unasked. Main thread only.
class EventStream {
 public:
  /// @param messenger the host's end; not owned; outlives this object.
  explicit EventStream(BinaryMessenger& messenger) : channel_(messenger, bridgeChannelName) {}

  /// The interface is ready to listen; it cannot become unready.
  void open() { isOpen_ = true; }

  /// Sends one event and does not wait for an answer; dropped while the interface is not ready.
  /// @param payload its members "version" and "type" are overwritten.
  void send(std::string_view type, Value::Map payload) const;

 private:
  MethodChannel channel_;
  bool isOpen_ = false;
};

}  // namespace tolvane
