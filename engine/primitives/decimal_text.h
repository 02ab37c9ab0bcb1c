#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Decimal numbers as messages and the arguments of engines write them.
namespace tolvane::DecimalText {

/// The shortest text that reads back as the same number; an integral one keeps one decimal: "0.25",
/// "5.0", "1e-05".
/// @param number finite.
[[nodiscard]] std::string format(double number);

/// @return the number that the whole text writes, infinities and NaN included; an infinity for one
/// beyond the range of a double, and next to nothing, or 0, for one too small. nullopt when it
/// writes none.
[[nodiscard]] std::optional<double> parse(std::string_view text);

/// @return the whole number that all of the text writes in digits, after a sign or none; nullopt
/// when it writes none or one beyond 64 bits.
[[nodiscard]] std::optional<std::int64_t> parseWhole(std::string_view text);

}  // namespace tolvane::DecimalText
