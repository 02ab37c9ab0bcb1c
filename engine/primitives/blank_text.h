#pragma once

#include <string_view>

namespace tolvane {

/// @return whether UTF-8 text holds nothing but white space and line ends (Unicode general
/// categories Zs,
///   Zl and Zp, tab, line feed, vertical tab, form feed, carriage return, next line).
[[nodiscard]] bool isBlank(std::string_view text);

}  // namespace tolvane
