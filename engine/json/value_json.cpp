#include "engine/json/value_json.h"

#include <cstdint>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

#include "platform/text/base64.h"

namespace tolvane::ValueJson {

namespace {

using Json = nlohmann::json;

constexpr const char* bytesKey = "$bytes";

Json jsonOf(const Value& value);

struct ToJson {
  Json operator()(std::monostate) const { return nullptr; }
  Json operator()(const Value::Bytes& bytes) const { return {{bytesKey, Base64::encode(bytes)}}; }
  Json operator()(const Value::List& list) const {
    Json json = Json::array();
    for (const Value& member : list) {
      json.push_back(jsonOf(member));
    }
    return json;
  }
  Json operator()(const Value::Map& map) const {
    Json json = Json::object();
    for (const auto& [key, member] : map) {
      json[key] = jsonOf(member);
    }
    return json;
  }
  template <typename T>
  Json operator()(const T& scalar) const {
    return scalar;
  }
};

Json jsonOf(const Value& value) {
  return std::visit(ToJson(), value.variant());
}

Value valueOf(const Json& json);

Value listOf(const Json& json) {
  Value::List list;
  list.reserve(json.size());
  for (const Json& member : json) {
    list.push_back(valueOf(member));
  }
  return list;
}

std::optional<Value::Bytes> bytesOf(const Json& json) {
  const auto found = json.find(bytesKey);
  const bool isMarked = json.size() == 1 && found != json.end() && found->is_string();
  if (!isMarked) {
    return std::nullopt;
  }
  const auto& text = found->get_ref<const std::string&>();
  auto bytes = Base64::decode(text);
  // Other texts that can be read, with blanks for instance, are not what write() writes.
  return bytes && Base64::encode(*bytes) == text ? std::move(bytes) : std::nullopt;
}

Value mapOf(const Json& json) {
  if (auto bytes = bytesOf(json)) {
    return std::move(*bytes);
  }
  Value::Map map;
  for (const auto& [key, member] : json.items()) {
    map.emplace(key, valueOf(member));
  }
  return map;
}

Value numberOf(const Json& json) {
  const bool isPastRange =
      json.is_number_unsigned() && json.get<std::uint64_t>() > std::uint64_t{INT64_MAX};
  return json.is_number_float() || isPastRange ? Value(json.get<double>())
                                               : Value(json.get<std::int64_t>());
}

Value valueOf(const Json& json) {
  if (json.is_array()) {
    return listOf(json);
  }
  if (json.is_object()) {
    return mapOf(json);
  }
  if (json.is_number()) {
    return numberOf(json);
  }
  if (json.is_boolean()) {
    return json.get<bool>();
  }
  return json.is_string() ? Value(json.get_ref<const std::string&>()) : Value();
}

/// Counts lists, maps and their members, whether or not the rest is JSON.
class Bounds {
 public:
  void read(char character) {
    if (isInText_) {
      readInText(character);
    } else if (character == '"') {
      isInText_ = true;
    } else if (character == '[' || character == '{') {
      ++members_;
      ++depth_;
    } else if (character == ']' || character == '}') {
      --depth_;
    } else if (character == ',') {
      ++members_;
    }
  }

  void require() const {
    if (depth_ > Value::maxDepth) {
      throw BoundsError("The text is nested too deeply.");
    }
    if (members_ > maxMembers) {
      throw BoundsError("The text has too many members.");
    }
  }

 private:
  void readInText(char character) {
    if (isEscaped_) {
      isEscaped_ = false;
    } else if (character == '\\') {
      isEscaped_ = true;
    } else if (character == '"') {
      isInText_ = false;
    }
  }

  bool isInText_ = false;
  bool isEscaped_ = false;
  int depth_ = 0;
  std::size_t members_ = 0;
};

/// Before anything is read: what is refused must not take memory first.
void requireBounds(std::string_view text) {
  if (text.size() > maxText) {
    throw BoundsError("The text is too long.");
  }
  Bounds bounds;
  for (const char character : text) {
    bounds.read(character);
    bounds.require();
  }
}

}  // namespace

std::string write(const Value& value, Layout layout) {
  constexpr int noLines = -1;
  constexpr int spaces = 2;
  const int indentation = layout == Layout::oneLine ? noLines : spaces;
  return jsonOf(value).dump(indentation, ' ', false, Json::error_handler_t::replace);
}

Value parse(std::string_view text) {
  requireBounds(text);
  Json json;
  try {
    json = Json::parse(text);
  } catch (const Json::exception& error) {
    throw ParseError(error.what());
  }
  return valueOf(json);
}

}  // namespace tolvane::ValueJson
