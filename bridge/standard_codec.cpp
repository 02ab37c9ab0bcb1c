#include "bridge/standard_codec.h"

#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <string>

namespace tolvane {

namespace {

static_assert(std::endian::native == std::endian::little, "numbers are copied as they stand");

enum Type : std::uint8_t {
  null = 0,
  yes = 1,
  no = 2,
  int32 = 3,
  int64 = 4,
  bigInteger = 5,
  float64 = 6,
  text = 7,
  uint8List = 8,
  int32List = 9,
  int64List = 10,
  float64List = 11,
  list = 12,
  map = 13,
  float32List = 14
};

constexpr std::uint8_t sizeIn16Bits = 254;  // also the first size that does not fit into one byte
constexpr std::uint8_t sizeIn32Bits = 255;

void requireDepth(int depth) {
  if (depth >= Value::maxDepth) {
    throw MalformedMessage("The message is nested too deeply.");
  }
}

template <typename... Ts>
struct Overloaded : Ts... {
  using Ts::operator()...;
};
template <typename... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

}  // namespace

Bytes StandardCodec::encode(const Value& value) {
  StandardWriter writer;
  writer.value(value);
  return writer.take();
}

Value StandardCodec::decode(BytesView message) {
  StandardReader reader(message);
  Value value = reader.value();
  reader.expectEnd();
  return value;
}

void StandardWriter::append(const Value& value, int depth) {
  std::visit(Overloaded{[&](std::monostate) { byte(Type::null); },
                        [&](bool flag) { byte(flag ? Type::yes : Type::no); },
                        [&](std::int64_t integer) { appendInteger(integer); },
                        [&](double number) { appendNumber(number); },
                        [&](const std::string& text) { appendSized(Type::text, asBytes(text)); },
                        [&](const Bytes& bytes) { appendSized(Type::uint8List, bytes); },
                        [&](const Value::List& list) { appendList(list, depth); },
                        [&](const Value::Map& map) { appendMap(map, depth); }},
             value.variant());
}

void StandardWriter::appendInteger(std::int64_t integer) {
  using Narrow = std::numeric_limits<std::int32_t>;
  if (integer >= Narrow::min() && integer <= Narrow::max()) {
    byte(Type::int32);
    appendRaw(static_cast<std::int32_t>(integer));
  } else {
    byte(Type::int64);
    appendRaw(integer);
  }
}

void StandardWriter::appendNumber(double number) {
  byte(Type::float64);
  while (message_.size() % sizeof number != 0) {
    byte(0);
  }
  appendRaw(number);
}

void StandardWriter::appendList(const Value::List& list, int depth) {
  requireDepth(depth);
  byte(Type::list);
  appendSize(list.size());
  for (const Value& member : list) {
    append(member, depth + 1);
  }
}

void StandardWriter::appendMap(const Value::Map& map, int depth) {
  requireDepth(depth);
  byte(Type::map);
  appendSize(map.size());
  for (const auto& [key, member] : map) {
    appendSized(Type::text, asBytes(key));
    append(member, depth + 1);
  }
}

void StandardWriter::appendSize(std::size_t size) {
  if (size < sizeIn16Bits) {
    byte(static_cast<std::uint8_t>(size));
  } else if (size <= std::numeric_limits<std::uint16_t>::max()) {
    byte(sizeIn16Bits);
    appendRaw(static_cast<std::uint16_t>(size));
  } else if (size <= std::numeric_limits<std::uint32_t>::max()) {
    byte(sizeIn32Bits);
    appendRaw(static_cast<std::uint32_t>(size));
  } else {
    throw MalformedMessage("The message is too large.");
  }
}

void StandardWriter::appendSized(std::uint8_t type, BytesView content) {
  byte(type);
  appendSize(content.size());
  message_.insert(message_.end(), content.begin(), content.end());
}

template <typename T>
void StandardWriter::appendRaw(T number) {
  std::array<std::uint8_t, sizeof(T)> bytes = {};
  std::memcpy(bytes.data(), &number, sizeof(T));
  message_.insert(message_.end(), bytes.begin(), bytes.end());
}

std::uint8_t StandardReader::byte() {
  return take(1).front();
}

void StandardReader::expectEnd() const {
  if (position_ != message_.size()) {
    throw MalformedMessage("The message is followed by other bytes.");
  }
}

Value StandardReader::read(int depth) {
  switch (byte()) {
    case Type::null:
      return nullptr;
    case Type::yes:
      return true;
    case Type::no:
      return false;
    case Type::int32:
      return raw<std::int32_t>();
    case Type::int64:
      return raw<std::int64_t>();
    case Type::float64:
      align(sizeof(double));
      return raw<double>();
    case Type::text:
      return readText();
    case Type::uint8List: {
      const BytesView bytes = take(size());
      return Bytes(bytes.begin(), bytes.end());
    }
    case Type::int32List:
      return readNumbers<std::int32_t>();
    case Type::int64List:
      return readNumbers<std::int64_t>();
    case Type::float64List:
      return readNumbers<double>();
    case Type::list:
      return readList(depth);
    case Type::map:
      return readMap(depth);
    case Type::float32List:
      return readNumbers<float>();
    case Type::bigInteger:
      throw MalformedMessage("The message holds a whole number of more than 64 bits.");
    default:
      throw MalformedMessage("The message holds a value of an unknown type.");
  }
}

Value StandardReader::readText() {
  const BytesView bytes = take(size());
  return std::string(bytes.begin(), bytes.end());
}

Value StandardReader::readList(int depth) {
  requireDepth(depth);
  Value::List list(count(1));
  for (Value& member : list) {
    member = read(depth + 1);
  }
  return list;
}

Value StandardReader::readMap(int depth) {
  requireDepth(depth);
  Value::Map map;
  bool hasTextKeys = true;
  for (std::size_t left = count(2); left > 0; --left) {
    const Value key = read(depth + 1);
    Value member = read(depth + 1);
    if (key.text() == nullptr) {
      hasTextKeys = false;
    } else {
      map.insert_or_assign(*key.text(), std::move(member));
    }
  }
  return hasTextKeys ? Value(std::move(map)) : Value();
}

template <typename T>
Value StandardReader::readNumbers() {
  const std::size_t length = size();
  align(sizeof(T));
  requireLeft(length, sizeof(T));
  Value::List list;
  list.reserve(length);
  for (std::size_t index = 0; index < length; ++index) {
    if constexpr (std::is_same_v<T, float>) {
      list.emplace_back(static_cast<double>(raw<float>()));
    } else {
      list.emplace_back(raw<T>());
    }
  }
  return list;
}

template <typename T>
T StandardReader::raw() {
  T number = {};
  std::memcpy(&number, take(sizeof(T)).data(), sizeof(T));
  return number;
}

std::size_t StandardReader::size() {
  const std::uint8_t first = byte();
  if (first < sizeIn16Bits) {
    return first;
  }
  return first == sizeIn16Bits ? raw<std::uint16_t>() : raw<std::uint32_t>();
}

std::size_t StandardReader::count(std::size_t smallest) {
  const std::size_t count = size();
  requireLeft(count, smallest);
  // Lists within each other could each claim all the bytes that are left.
  if (count > membersLeft_) {
    throw MalformedMessage("The message is cut short.");
  }
  membersLeft_ -= count;
  return count;
}

void StandardReader::requireLeft(std::size_t count, std::size_t each) const {
  if (count > (message_.size() - position_) / each) {
    throw MalformedMessage("The message is cut short.");
  }
}

void StandardReader::align(std::size_t boundary) {
  const std::size_t past = position_ % boundary;
  if (past != 0) {
    take(boundary - past);
  }
}

BytesView StandardReader::take(std::size_t count) {
  requireLeft(count, 1);
  const BytesView bytes = message_.subspan(position_, count);
  position_ += count;
  return bytes;
}

}  // namespace tolvane
