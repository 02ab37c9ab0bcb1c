#pragma once

#include <cstdint>
#include <string>

#include "engine/primitives/value.h"

/// Readers of the options that a user gave a tool. A number may come as a number or as its decimal
/// text; a value that is missing or cannot be read takes the default, one out of bounds fails.
namespace tolvane::UniversalEngine {

/// @param fallback, minimum, maximum both bounds are allowed.
/// @throws ConversionFailure "Quality must be between 0.1 and 1.0."
[[nodiscard]] double number(const Value::Map& options,
                            const std::string& key,
                            double fallback,
                            double minimum,
                            double maximum);

/// @throws ConversionFailure as number() does, or "Width must be a whole number."
[[nodiscard]] std::int64_t integer(const Value::Map& options,
                                   const std::string& key,
                                   std::int64_t fallback,
                                   std::int64_t minimum,
                                   std::int64_t maximum);

/// The option "color": "#" and six hexadecimal digits; white when it is absent.
/// @throws ConversionFailure
[[nodiscard]] std::string color(const Value::Map& options);

}  // namespace tolvane::UniversalEngine
