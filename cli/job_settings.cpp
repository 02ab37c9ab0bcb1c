#include "cli/job_settings.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "bridge/value_json.h"

namespace tolvane {

namespace {

enum class SettingType { number, text, list, map };

struct Setting {
  std::string_view key;
  SettingType type;
  std::string_view hint;  // completes "needs ..."
};

constexpr std::array<Setting, 5> settings = {{
    {"quality", SettingType::number, "a number such as 0.8"},
    {"maxDimension", SettingType::number, "a whole number such as 1600"},
    {"range", SettingType::text, "pages such as 1-3,5"},
    {"pages", SettingType::list, "a list such as [2,0]"},
    {"rotations", SettingType::map, "a map such as {\"2\":90}"},
}};

bool fits(const Value& value, SettingType type) {
  switch (type) {
    case SettingType::number:
      return value.number().has_value();
    case SettingType::text:
      return value.text() != nullptr;
    case SettingType::list:
      return value.list() != nullptr;
    case SettingType::map:
      return value.map() != nullptr;
  }
  return false;
}

Value typedValue(const Setting& setting, const std::string& text) {
  if (setting.type == SettingType::text) {
    return text;
  }
  try {
    const Value parsed = ValueJson::parse(text);
    if (fits(parsed, setting.type)) {
      return parsed;
    }
  } catch (const ValueJson::ParseError&) {
  }
  throw UsageError("The option " + std::string(setting.key) + " needs " +
                   std::string(setting.hint) + ".");
}

}  // namespace

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
