#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/files/bytes.h"

namespace tolvane {

/// One end of the road on which the host and the interface exchange messages. Delivery is
/// immediate: send() returns after the other end's handler has returned, so that nothing can be
/// overtaken. A handler may send in its turn. Main thread only.
class BinaryMessenger {
 public:
  /// Called at most once, now or later; an empty message says that nobody answered.
  using Reply = std::function<void(const Bytes& message)>;
  using Handler = std::function<void(BytesView message, Reply reply)>;

  BinaryMessenger() = default;
  ~BinaryMessenger() = default;
  BinaryMessenger(const BinaryMessenger&) = delete;
  BinaryMessenger& operator=(const BinaryMessenger&) = delete;

  /// Replaces the handler of what the other end sends under the name of a channel.
  void setHandler(const std::string& channel, Handler handler);

  void send(const std::string& channel, BytesView message, Reply reply) const;

 private:
  friend class MessengerPair;

  std::map<std::string, std::shared_ptr<const Handler>> handlers_;
  const BinaryMessenger* other_ = nullptr;  // not owned; the other member of the pair
};

/// The two ends within one process.
class MessengerPair {
 public:
  MessengerPair();

  [[nodiscard]] BinaryMessenger& host() { return host_; }
  [[nodiscard]] BinaryMessenger& interface() { return interface_; }

 private:
  BinaryMessenger host_;
  BinaryMessenger interface_;
};

}  // namespace tolvane
