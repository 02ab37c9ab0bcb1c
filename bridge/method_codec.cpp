#include "bridge/method_codec.h"

#include <utility>

namespace tolvane::MethodCodec {

namespace {

constexpr std::uint8_t successMark = 0;
constexpr std::uint8_t errorMark = 1;

std::string textOf(const Value& value) {
  if (value.text() == nullptr) {
    throw MalformedMessage("The message holds no text where a name or a sentence belongs.");
  }
  return *value.text();
}

ChannelError readError(StandardReader& reader) {
  ChannelError error;
  error.code = textOf(reader.value());
  const Value message = reader.value();
  error.message = message.isNull() ? "" : textOf(message);
  error.details = reader.value();
  return error;
}

}  // namespace

Bytes encodeCall(const MethodCall& call) {
  StandardWriter writer;
  writer.value(call.method);
  writer.value(call.arguments);
  return writer.take();
}

MethodCall decodeCall(BytesView message) {
  StandardReader reader(message);
  MethodCall call;
  call.method = textOf(reader.value());
  call.arguments = reader.value();
  reader.expectEnd();
  return call;
}

Bytes encodeReply(const ChannelReply& reply) {
  StandardWriter writer;
  if (const auto* result = std::get_if<Value>(&reply)) {
    writer.byte(successMark);
    writer.value(*result);
  } else if (const auto* error = std::get_if<ChannelError>(&reply)) {
    writer.byte(errorMark);
    writer.value(error->code);
    writer.value(error->message);
    writer.value(error->details);
  }
  return writer.take();
}

ChannelReply decodeReply(BytesView message) {
  if (message.empty()) {
    return NotImplemented{};
  }
  StandardReader reader(message);
  const std::uint8_t mark = reader.byte();
  if (mark > errorMark) {
    throw MalformedMessage("The reply is neither a result nor an error.");
  }
  ChannelReply reply =
      mark == successMark ? ChannelReply(reader.value()) : ChannelReply(readError(reader));
  reader.expectEnd();
  return reply;
}

}  // namespace tolvane::MethodCodec
