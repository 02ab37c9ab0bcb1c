#include "bridge/standard_codec.h"

#include "bridge/method_codec.h"
#include "tests/fuzz/reader.h"

/// What was decoded is the same when it was encoded and decoded again. Messages are compared, for
/// one that is not a number equals nothing.
void read(tolvane::BytesView input) {
  using namespace tolvane;
  try {
    const Bytes message = StandardCodec::encode(StandardCodec::decode(input));
    require(StandardCodec::encode(StandardCodec::decode(message)) == message);
  } catch (const MalformedMessage&) {
  }
  try {
    const Bytes message = MethodCodec::encodeCall(MethodCodec::decodeCall(input));
    require(MethodCodec::encodeCall(MethodCodec::decodeCall(message)) == message);
  } catch (const MalformedMessage&) {
  }
  try {
    static_cast<void>(MethodCodec::encodeReply(MethodCodec::decodeReply(input)));
  } catch (const MalformedMessage&) {
  }
}
