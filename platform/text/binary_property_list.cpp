#include "platform/text/binary_property_list.h"

#include <cstddef>
#include <cstdint>
#include <utility>

#include "platform/text/property_list_limits.h"
#include "platform/text/text_encoding.h"
#include "platform/text/utf16_joiner.h"

namespace tolvane {

namespace {

void require(bool holds) {
  if (!holds) {
    throw DamagedPropertyList();
  }
}

/// The high half of an object's first byte.
enum class ObjectType : unsigned {
  singleton = 0x0,  // null, false or true
  integer = 0x1,
  real = 0x2,
  date = 0x3,
  data = 0x4,
  asciiText = 0x5,
  utf16Text = 0x6,
  identifier = 0x8,
  array = 0xA,
  dictionary = 0xD
};

ObjectType typeIn(std::uint8_t firstByte) {
  return static_cast<ObjectType>(firstByte >> 4);
}

/// Layout: "bplist00", the objects, the table of their offsets, and a trailer of 32 bytes. Numbers
/// are big-endian; the trailer tells how many bytes offsets and references take.
class BinaryReader {
 public:
  explicit BinaryReader(BytesView bytes);

  [[nodiscard]] PropertyList read() { return object(topObject_); }

 private:
  static constexpr std::size_t headerSize = 8;
  static constexpr std::size_t trailerSize = 32;
  static constexpr std::size_t maxNumberSize = 8;

  /// `position` is that of the object's content, after its first byte and its length.
  struct Object {
    ObjectType type = ObjectType::singleton;
    std::uint64_t count = 0;
    std::size_t position = 0;
  };

  [[nodiscard]] BytesView content(std::size_t position,
                                  std::uint64_t count,
                                  std::size_t unit) const;
  [[nodiscard]] std::uint64_t number(std::size_t position, std::size_t size) const;
  [[nodiscard]] Object header(std::uint64_t reference) const;
  void readLongCount(Object& object) const;

  PropertyList object(std::uint64_t reference);
  std::string text(const Object& object);
  BytesView sharedContent(const Object& object, std::size_t unit);
  PropertyList::Array arrayOf(const Object& object);
  PropertyList::Dictionary dictionaryOf(const Object& object);

  BytesView bytes_;
  std::size_t offsetSize_ = 0;
  std::size_t referenceSize_ = 0;
  std::uint64_t objectCount_ = 0;
  std::uint64_t topObject_ = 0;
  std::size_t offsetTable_ = 0;

  PropertyListLimits limits_;
  std::uint64_t contentAllowance_ = 0;
};

BinaryReader::BinaryReader(BytesView bytes) : bytes_(bytes) {
  require(bytes.size() >= headerSize + trailerSize);
  const std::size_t trailer = bytes.size() - trailerSize;
  offsetSize_ = bytes[trailer + 6];
  referenceSize_ = bytes[trailer + 7];
  objectCount_ = number(trailer + 8, maxNumberSize);
  topObject_ = number(trailer + 16, maxNumberSize);
  const std::uint64_t table = number(trailer + 24, maxNumberSize);
  require(offsetSize_ >= 1 && offsetSize_ <= maxNumberSize);
  require(referenceSize_ >= 1 && referenceSize_ <= maxNumberSize);
  require(table > headerSize && table < trailer);
  require(objectCount_ <= (trailer - table) / offsetSize_);
  offsetTable_ = static_cast<std::size_t>(table);

  // Texts that occur more than once are stored once. A list that repeats more than this was made
  // to swell.
  constexpr std::uint64_t maxRepetition = 16;
  contentAllowance_ = maxRepetition * bytes.size();
}

/// `count` units of `unit` bytes, all of them before the table of offsets.
BytesView BinaryReader::content(std::size_t position, std::uint64_t count, std::size_t unit) const {
  require(position <= offsetTable_ && count <= (offsetTable_ - position) / unit);
  return bytes_.subspan(position, static_cast<std::size_t>(count) * unit);
}

/// @param size in bytes, at most 8. The caller has checked that they lie within the file.
std::uint64_t BinaryReader::number(std::size_t position, std::size_t size) const {
  std::uint64_t value = 0;
  for (const std::uint8_t byte : bytes_.subspan(position, size)) {
    value = value << 8 | byte;
  }
  return value;
}

BinaryReader::Object BinaryReader::header(std::uint64_t reference) const {
  require(reference < objectCount_);
  const std::uint64_t offset =
      number(offsetTable_ + static_cast<std::size_t>(reference) * offsetSize_, offsetSize_);
  require(offset >= headerSize && offset < offsetTable_);
  const auto position = static_cast<std::size_t>(offset);
  constexpr unsigned countFollows = 0xF;
  const std::uint8_t first = bytes_[position];
  Object object = {typeIn(first), first & 0xFU, position + 1};
  if (object.count == countFollows && object.type >= ObjectType::data) {
    readLongCount(object);
  }
  return object;
}

/// The count stands after the first byte, as an integer object of its own.
void BinaryReader::readLongCount(Object& object) const {
  const std::uint8_t first = content(object.position, 1, 1)[0];
  require(typeIn(first) == ObjectType::integer);
  const std::size_t size = std::size_t{1} << (first & 0xFU);
  require(size <= maxNumberSize);
  static_cast<void>(content(object.position + 1, size, 1));
  object.count = number(object.position + 1, size);
  object.position += 1 + size;
}

/// A list that contains itself ends at the limit of depth, one that shares its parts too often at
/// that of values.
PropertyList BinaryReader::object(std::uint64_t reference) {
  const PropertyListLimits::Value counted(limits_);
  const Object object = header(reference);
  switch (object.type) {
    case ObjectType::singleton:
    case ObjectType::integer:
    case ObjectType::real:
    case ObjectType::date:
    case ObjectType::identifier:
      return {PropertyList::Other()};
    case ObjectType::data: {
      const BytesView bytes = sharedContent(object, 1);
      return {Bytes(bytes.begin(), bytes.end())};
    }
    case ObjectType::asciiText:
    case ObjectType::utf16Text:
      return {text(object)};
    case ObjectType::array:
      return {arrayOf(object)};
    case ObjectType::dictionary:
      return {dictionaryOf(object)};
    default:
      throw DamagedPropertyList();
  }
}

std::string BinaryReader::text(const Object& object) {
  if (object.type == ObjectType::asciiText) {
    std::optional<std::string> text = TextEncoding::fromUtf8(sharedContent(object, 1));
    require(text.has_value());
    return std::move(*text);
  }
  require(object.type == ObjectType::utf16Text);
  const BytesView units = sharedContent(object, 2);
  std::string text;
  Utf16Joiner joiner(text);
  for (std::size_t index = 0; index < units.size(); index += 2) {
    joiner.append(static_cast<char16_t>(units[index] << 8 | units[index + 1]));
  }
  joiner.finish();
  return text;
}

BytesView BinaryReader::sharedContent(const Object& object, std::size_t unit) {
  const BytesView bytes = content(object.position, object.count, unit);
  require(bytes.size() <= contentAllowance_);
  contentAllowance_ -= bytes.size();
  return bytes;
}

PropertyList::Array BinaryReader::arrayOf(const Object& object) {
  const std::size_t members = content(object.position, object.count, referenceSize_).size();
  PropertyList::Array array;
  for (std::size_t index = 0; index < members; index += referenceSize_) {
    array.push_back(this->object(number(object.position + index, referenceSize_)));
  }
  return array;
}

/// The references of all keys, then those of all values.
PropertyList::Dictionary BinaryReader::dictionaryOf(const Object& object) {
  const std::size_t values = content(object.position, object.count, 2 * referenceSize_).size() / 2;
  PropertyList::Dictionary dictionary;
  for (std::size_t index = 0; index < values; index += referenceSize_) {
    std::string key = text(header(number(object.position + index, referenceSize_)));
    dictionary.insert_or_assign(
        std::move(key), this->object(number(object.position + values + index, referenceSize_)));
  }
  return dictionary;
}

}  // namespace

PropertyList readBinaryPropertyList(BytesView bytes) {
  return BinaryReader(bytes).read();
}

}  // namespace tolvane
