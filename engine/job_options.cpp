#include "engine/job_options.h"

namespace tolvane {

namespace {

/// A list counts as one of integers only if every member is one.
std::optional<std::vector<std::int64_t>> integers(const Value& value) {
  if (value.list() == nullptr) {
    return std::nullopt;
  }
  std::vector<std::int64_t> numbers;
  for (const Value& member : *value.list()) {
    const auto number = member.integer();
    if (!number) {
      return std::nullopt;
    }
    numbers.push_back(*number);
  }
  return numbers;
}

std::map<std::string, std::int64_t> integerMap(const Value& value) {
  std::map<std::string, std::int64_t> numbers;
  if (value.map() == nullptr) {
    return numbers;
  }
  for (const auto& [key, member] : *value.map()) {
    const auto number = member.integer();
    if (!number) {
      return {};
    }
    numbers.emplace(key, *number);
  }
  return numbers;
}

}  // namespace

JobOptions JobOptions::read(const Value::Map& options) {
  JobOptions result;
  result.quality = valueAt(options, "quality").number().value_or(result.quality);
  result.maxDimension = valueAt(options, "maxDimension").integer().value_or(result.maxDimension);
  if (const std::string* range = valueAt(options, "range").text()) {
    result.range = *range;
  }
  result.pages = integers(valueAt(options, "pages"));
  result.rotations = integerMap(valueAt(options, "rotations"));
  return result;
}

}  // namespace tolvane
