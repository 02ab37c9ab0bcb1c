#include "bridge/binary_messenger.h"

#include <utility>

namespace tolvane {

void BinaryMessenger::setHandler(const std::string& channel, Handler handler) {
  handlers_[channel] = std::make_shared<const Handler>(std::move(handler));
}

void BinaryMessenger::send(const std::string& channel, BytesView message, Reply reply) const {
  const auto found = other_->handlers_.find(channel);
  if (found == other_->handlers_.end()) {
    reply({});
    return;
  }
  // Held here, because the handler may replace itself.
  const std::shared_ptr<const Handler> handler = found->second;
  (*handler)(message, std::move(reply));
}

MessengerPair::MessengerPair() {
  host_.other_ = &interface_;
  interface_.other_ = &host_;
}

}  // namespace tolvane
