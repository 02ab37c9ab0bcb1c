#include "engine/primitives/value.h"

#include <cmath>

namespace tolvane {

std::optional<bool> Value::flag() const {
  const bool* flag = std::get_if<bool>(&variant_);
  return flag != nullptr ? std::optional(*flag) : std::nullopt;
}

std::optional<std::int64_t> Value::integer() const {
  if (const auto* integer = std::get_if<std::int64_t>(&variant_)) {
    return *integer;
  }
  if (const auto* number = std::get_if<double>(&variant_)) {
    constexpr double limit = 9'223'372'036'854'775'808.0;  // 2^63, the first double past the range
    if (*number >= -limit && *number < limit && std::trunc(*number) == *number) {
      return static_cast<std::int64_t>(*number);
    }
    return std::nullopt;
  }
  if (const auto value = flag()) {
    return *value ? 1 : 0;
  }
  return std::nullopt;
}

std::optional<double> Value::number() const {
  if (const auto* number = std::get_if<double>(&variant_)) {
    return *number;
  }
  if (const auto* integer = std::get_if<std::int64_t>(&variant_)) {
    return static_cast<double>(*integer);
  }
  if (const auto value = flag()) {
    return *value ? 1.0 : 0.0;
  }
  return std::nullopt;
}

std::optional<std::vector<std::string>> Value::texts() const {
  const List* members = list();
  if (members == nullptr) {
    return std::nullopt;
  }
  std::vector<std::string> texts;
  texts.reserve(members->size());
  for (const Value& member : *members) {
    if (member.text() == nullptr) {
      return std::nullopt;
    }
    texts.push_back(*member.text());
  }
  return texts;
}

const Value& Value::operator[](std::string_view key) const {
  static const Value null;
  return map() != nullptr ? valueAt(*map(), key) : null;
}

const Value& valueAt(const Value::Map& map, std::string_view key) {
  static const Value null;
  const auto found = map.find(key);
  return found != map.end() ? found->second : null;
}

}  // namespace tolvane
