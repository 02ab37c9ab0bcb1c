#include "universal/job/option_readers.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/decimal_text.h"

namespace tolvane::UniversalEngine {

namespace {

char upper(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

char lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// "maxDimension" as messages write it: "Maxdimension".
std::string capitalized(std::string_view key) {
  std::string text(key);
  bool startsWord = true;
  for (char& letter : text) {
    letter = startsWord ? upper(letter) : lower(letter);
    startsWord = letter == ' ';
  }
  return text;
}

double valueOf(const Value& value, double fallback) {
  if (const std::string* text = value.text()) {
    return DecimalText::parse(*text).value_or(fallback);
  }
  return value.number().value_or(fallback);
}

bool isHexadecimal(char digit) {
  return (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f') ||
         (digit >= 'A' && digit <= 'F');
}

}  // namespace

double number(const Value::Map& options,
              const std::string& key,
              double fallback,
              double minimum,
              double maximum) {
  const double value = valueOf(valueAt(options, key), fallback);
  if (!std::isfinite(value) || value < minimum || value > maximum) {
    throw ConversionFailure::message(capitalized(key) + " must be between " +
                                     DecimalText::format(minimum) + " and " +
                                     DecimalText::format(maximum) + ".");
  }
  return value;
}

std::int64_t integer(const Value::Map& options,
                     const std::string& key,
                     std::int64_t fallback,
                     std::int64_t minimum,
                     std::int64_t maximum) {
  const double value = number(options,
                              key,
                              static_cast<double>(fallback),
                              static_cast<double>(minimum),
                              static_cast<double>(maximum));
  if (std::round(value) != value) {
    throw ConversionFailure::message(capitalized(key) + " must be a whole number.");
  }
  return static_cast<std::int64_t>(value);
}

std::string color(const Value::Map& options) {
  const std::string* chosen = valueAt(options, "color").text();
  std::string text = chosen != nullptr ? *chosen : "#FFFFFF";
  constexpr std::size_t length = 7;
  if (text.size() != length || text.front() != '#' ||
      !std::all_of(text.begin() + 1, text.end(), isHexadecimal)) {
    throw ConversionFailure::message("Enter a color such as #FFFFFF.");
  }
  return text;
}

}  // namespace tolvane::UniversalEngine
