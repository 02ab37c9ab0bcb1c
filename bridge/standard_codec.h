#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>

#include "engine/primitives/value.h"
#include "platform/files/bytes.h"

/// The binary message format of the channel: a value is a type byte and its content, numbers are
/// little-endian, and 4 and 8 byte content (except whole numbers) begins at a multiple of its own
/// size, counted from the start of the message.
namespace tolvane {

/// A message that does not follow the format: cut short, followed by other bytes, of an unknown
/// type, with a size that it does not hold, or nested too deeply. Nothing else is thrown for one.
class MalformedMessage : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

namespace StandardCodec {
[[nodiscard]] Bytes encode(const Value& value);
/// @throws MalformedMessage
[[nodiscard]] Value decode(BytesView message);
}  // namespace StandardCodec

/// Appends values to one message.
class StandardWriter {
 public:
  void byte(std::uint8_t byte) { message_.push_back(byte); }
  /// Whole numbers take 4 bytes where they fit, else 8.
  /// @throws MalformedMessage for a value nested too deeply or a size of 4 GiB and more.
  void value(const Value& value) { append(value, 0); }
  [[nodiscard]] Bytes take() { return std::move(message_); }

 private:
  void append(const Value& value, int depth);
  void appendInteger(std::int64_t integer);
  void appendNumber(double number);
  void appendList(const Value::List& list, int depth);
  void appendMap(const Value::Map& map, int depth);
  void appendSize(std::size_t size);
  void appendSized(std::uint8_t type, BytesView content);
  template <typename T>
  void appendRaw(T number);

  Bytes message_;
};

/// Reads the values of one message in order. Never reads past its end, and never makes room for
/// more members, in all its lists and maps together, than it has bytes. Every member throws
/// MalformedMessage.
class StandardReader {
 public:
  /// @param message not copied; outlives this object.
  explicit StandardReader(BytesView message) : message_(message), membersLeft_(message.size()) {}

  std::uint8_t byte();
  /// Lists of numbers of one type read as lists of values. A map with a key that is not text is
  /// not a string-keyed map and reads as null, which counts as absent everywhere; its members must
  /// be well formed all the same. Whole numbers of more than 64 bits are refused.
  Value value() { return read(0); }
  void expectEnd() const;

 private:
  Value read(int depth);
  Value readList(int depth);
  Value readMap(int depth);
  Value readText();
  template <typename T>
  Value readNumbers();
  template <typename T>
  T raw();
  std::size_t size();
  /// A number of members, each of at least `smallest` bytes, checked against what is left, and
  /// taken from what other lists and maps may have.
  std::size_t count(std::size_t smallest);
  void requireLeft(std::size_t count, std::size_t each) const;
  void align(std::size_t boundary);
  BytesView take(std::size_t count);

  BytesView message_;
  std::size_t position_ = 0;
  std::size_t membersLeft_;
};

}  // namespace tolvane
