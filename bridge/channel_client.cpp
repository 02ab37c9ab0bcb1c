#include "bridge/channel_client.h"

#include <utility>

namespace tolvane {

void ChannelClient::call(const std::string& method,
                         const Value& arguments,
                         MethodChannel::Callback callback) {
  channel_.invoke(method, arguments, std::move(callback));
}

void ChannelClient::onEvent(EventHandler handler) {
  channel_.setHandler(
      [handler = std::move(handler)](const MethodCall& call, const MethodReply& reply) {
        if (call.method != eventMethod || call.arguments.map() == nullptr) {
          reply.notImplemented();
          return;
        }
        handler(*call.arguments.map());
        reply.success();
      });
}

}  // namespace tolvane
