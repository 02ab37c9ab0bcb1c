#include "bridge/method_channel.h"

#include <optional>
#include <stdexcept>
#include <utility>

namespace tolvane {

namespace {

std::optional<MethodCall> callIn(BytesView message) {
  try {
    return MethodCodec::decodeCall(message);
  } catch (const MalformedMessage&) {
    return std::nullopt;
  }
}

ChannelReply replyIn(BytesView message) {
  try {
    return MethodCodec::decodeReply(message);
  } catch (const MalformedMessage& failure) {
    return ChannelError{"malformed", failure.what(), {}};
  }
}

}  // namespace

MethodReply::MethodReply(BinaryMessenger::Reply sink)
    : sink_(std::make_shared<BinaryMessenger::Reply>(std::move(sink))) {}

void MethodReply::success(Value result) const {
  answer(std::move(result));
}

void MethodReply::error(std::string code, std::string message) const {
  answer(ChannelError{std::move(code), std::move(message), {}});
}

void MethodReply::notImplemented() const {
  answer(NotImplemented{});
}

void MethodReply::answer(const ChannelReply& reply) const {
  const BinaryMessenger::Reply sink = std::exchange(*sink_, nullptr);
  if (!sink) {
    throw std::logic_error("A call was answered twice.");
  }
  sink(MethodCodec::encodeReply(reply));
}

void MethodChannel::setHandler(Handler handler) {
  messenger_.setHandler(
      name_, [handler = std::move(handler)](BytesView message, BinaryMessenger::Reply sink) {
        const MethodReply reply(std::move(sink));
        if (const auto call = callIn(message)) {
          handler(*call, reply);
        } else {
          reply.notImplemented();
        }
      });
}

void MethodChannel::invoke(const std::string& method,
                           const Value& arguments,
                           Callback callback) const {
  messenger_.send(
      name_,
      MethodCodec::encodeCall({method, arguments}),
      [callback = std::move(callback)](const Bytes& message) { callback(replyIn(message)); });
}

}  // namespace tolvane
