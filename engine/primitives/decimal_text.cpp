#include "engine/primitives/decimal_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <system_error>

namespace tolvane::DecimalText {

namespace {

/// @param number in decimals, out of the range of a double, which leaves std::from_chars without a
/// value.
double outOfRange(std::string_view number) {
  std::istringstream stream{std::string(number)};
  stream.imbue(std::locale::classic());
  double nearest = 0;
  stream >> nearest;  // fails for a number too large, with the largest there is
  return stream.fail() ? std::copysign(std::numeric_limits<double>::infinity(), nearest) : nearest;
}

}  // namespace

std::string format(double number) {
  // Beyond these, the digits of a plain number would be mostly zeros.
  constexpr double smallestPlain = 1e-4;
  constexpr double smallestScientific = 1e16;
  const double magnitude = std::abs(number);
  const bool isPlain =
      number == 0 || (magnitude >= smallestPlain && magnitude < smallestScientific);
  std::array<char, 32> digits{};
  const auto [end, error] =
      std::to_chars(digits.data(),
                    digits.data() + digits.size(),
                    number,
                    isPlain ? std::chars_format::fixed : std::chars_format::scientific);
  std::string text(digits.data(), end);
  if (isPlain && text.find('.') == std::string::npos) {
    text += ".0";
  }
  return text;
}

std::optional<double> parse(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) {
      return std::nullopt;
    }
  }
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
    return std::nullopt;
  }
  return error == std::errc::result_out_of_range ? outOfRange(text) : number;
}

std::optional<std::int64_t> parseWhole(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) {
    text.remove_prefix(1);
  }
  std::int64_t number = 0;
  const char* const stop = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), stop, number);
  return error == std::errc() && end == stop ? std::optional(number) : std::nullopt;
}

}  // namespace tolvane::DecimalText
