#include "cli/job_settings.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "engine/json/value_json.h"
#include "engine/native_action.h"

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

/// The type that the offer's field of this key names; empty when no field has it.
std::string fieldType(const Value& offer, const std::string& key) {
  const Value::List* fields = offer["fields"].list();
  if (fields != nullptr) {
    for (const Value& field : *fields) {
      if (field["key"] == Value(key)) {
        return *field["type"].text();
      }
    }
  }
  return "";
}

Value fieldValue(const std::string& type, const std::string& key, const std::string& text) {
  if (type == "number") {
    return typedValue({key, SettingType::number, "a number"}, text);
  }
  if (type == "bool") {
    return typedValue({key, SettingType::flag, "true or false"}, text);
  }
  return text;
}

/// @param key of an option that some action has.
Value actionValue(const std::string& key, const std::string& text) {
  return typedValue(*std::find_if(settings.begin(),
                                  settings.end(),
                                  [&key](const Setting& setting) { return setting.key == key; }),
                    text);
}

void requireKnown(const OptionKeys& known, const std::string& key) {
  try {
    known.require(key);
  } catch (const UnknownOption& unknown) {
    throw UsageError(unknown.what());
  }
}

}  // namespace

OfferJob offerJob(const Arguments& arguments, const Value& offer) {
  const OptionKeys known = OptionKeys::ofOffer(offer);
  Value::Map chosen;
  for (const auto& [key, text] : arguments.settings) {
    requireKnown(known, key);
    const std::string type = fieldType(offer, key);
    chosen[key] = type.empty() ? actionValue(key, text) : fieldValue(type, key, text);
  }
  return OfferJob::make(offer, chosen);
}

Value::Map actionOptions(const Arguments& arguments, const std::string& action) {
  Value::Map options;
  if (!nativeAction(action)) {
    return options;
  }
  const OptionKeys known = OptionKeys::ofAction(action);
  for (const auto& [key, text] : arguments.settings) {
    requireKnown(known, key);
    options[key] = actionValue(key, text);
  }
  return options;
}

}  // namespace tolvane
