#include "cli/job_settings.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "engine/json/value_json.h"

namespace tolvane {

namespace {

enum class SettingType { number, wholeNumber, flag, text, wholeNumbers, wholeNumbersByPage };

struct Setting {
  std::string_view key;
  SettingType type;
  std::string_view hint;  // completes "needs ..."
};

constexpr std::array<Setting, 5> settings = {{
    {"quality", SettingType::number, "a number such as 0.8"},
    {"maxDimension", SettingType::wholeNumber, "a whole number such as 1600"},
    {"range", SettingType::text, "pages such as 1-3,5"},
    {"pages", SettingType::wholeNumbers, "a list such as [2,0]"},
    {"rotations", SettingType::wholeNumbersByPage, "a map such as {\"2\":90}"},
}};

/// A flag, which the engines would take for 1 or 0, is no number that somebody meant to type.
bool isWhole(const Value& value) {
  return value.integer().has_value() && !value.flag().has_value();
}

bool fits(const Value& value, SettingType type) {
  switch (type) {
    case SettingType::number:
      return value.number().has_value() && !value.flag().has_value();
    case SettingType::wholeNumber:
      return isWhole(value);
    case SettingType::flag:
      return value.flag().has_value();
    case SettingType::text:
      return value.text() != nullptr;
    case SettingType::wholeNumbers:
      return value.list() != nullptr &&
             std::all_of(value.list()->begin(), value.list()->end(), isWhole);
    case SettingType::wholeNumbersByPage:
      return value.map() != nullptr &&
             std::all_of(value.map()->begin(), value.map()->end(), [](const auto& member) {
               return isWhole(member.second);
             });
  }
  return false;
}

/// The value that a text spells in JSON; nullopt when it spells none.
std::optional<Value> parsed(const std::string& text) {
  try {
    return ValueJson::parse(text);
  } catch (const ValueJson::ParseError&) {
    return std::nullopt;
  }
}

Value typedValue(const Setting& setting, const std::string& text) {
  if (setting.type == SettingType::text) {
    return text;
  }
  const auto value = parsed(text);
  if (value && fits(*value, setting.type)) {
    return *value;
  }
  throw UsageError("The option " + std::string(setting.key) + " needs " +
                   std::string(setting.hint) + ".");
}

std::string keysOf(const Value::List& fields) {
  std::string keys;
  for (const Value& field : fields) {
    keys += (keys.empty() ? "" : ", ") + *field["key"].text();
  }
  return keys;
}

/// The type that the offer's field of this key names.
std::string fieldType(const Value::List& fields, const std::string& key) {
  const auto found = std::find_if(fields.begin(), fields.end(), [&key](const Value& field) {
    return field["key"] == Value(key);
  });
  if (found == fields.end()) {
    throw UsageError("This has no option " + key + ", only " + keysOf(fields) + ".");
  }
  return *(*found)["type"].text();
}

Value fieldValue(const Value::List& fields, const std::string& key, const std::string& text) {
  const std::string type = fieldType(fields, key);
  if (type == "number") {
    return typedValue({key, SettingType::number, "a number"}, text);
  }
  if (type == "bool") {
    return typedValue({key, SettingType::flag, "true or false"}, text);
  }
  return text;
}

}  // namespace

Value::Map offerOptions(const Arguments& arguments, const Value& fields) {
  const bool hasFields = fields.list() != nullptr && !fields.list()->empty();
  Value::Map options;
  for (const auto& [key, text] : arguments.settings) {
    options[key] =
        hasFields ? fieldValue(*fields.list(), key, text) : parsed(text).value_or(Value(text));
  }
  return options;
}

Value::Map actionOptions(const Arguments& arguments) {
  Value::Map options;
  for (const auto& [key, text] : arguments.settings) {
    const auto* found =
        std::find_if(settings.begin(), settings.end(), [&wanted = key](const Setting& setting) {
          return setting.key == wanted;
        });
    if (found == settings.end()) {
      throw UsageError("No action has an option " + key + ".");
    }
    options[key] = typedValue(*found, text);
  }
  return options;
}

}  // namespace tolvane
