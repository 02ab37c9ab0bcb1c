#pragma once

#include <string>
#include <variant>

#include "bridge/standard_codec.h"
#include "engine/primitives/value.h"
#include "platform/files/bytes.h"

namespace tolvane {

struct MethodCall {
  std::string method;
  Value arguments;

  friend bool operator==(const MethodCall&, const MethodCall&) = default;
};

struct ChannelError {
  std::string code;
  std::string message;
  Value details;

  friend bool operator==(const ChannelError&, const ChannelError&) = default;
};

/// The other end knows no such method.
struct NotImplemented {
  friend bool operator==(NotImplemented, NotImplemented) { return true; }
};

/// How a call ended: its result, its error, or not at all.
using ChannelReply = std::variant<Value, ChannelError, NotImplemented>;

}  // namespace tolvane

/// Calls and their replies as messages. A call is the method's name and the arguments; a reply is 0
/// and the result, or 1, code, message and details, or an empty message (not implemented).
namespace tolvane::MethodCodec {

[[nodiscard]] Bytes encodeCall(const MethodCall& call);
/// @throws MalformedMessage
[[nodiscard]] MethodCall decodeCall(BytesView message);

[[nodiscard]] Bytes encodeReply(const ChannelReply& reply);
/// @throws MalformedMessage
[[nodiscard]] ChannelReply decodeReply(BytesView message);

}  // namespace tolvane::MethodCodec
