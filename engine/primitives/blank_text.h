#pragma once

#include <string_view>

namespace tolvane {

/// @return whether UTF-8 text holds nothing but white space and line ends. Those are the Unicode
/// categories Zs, Zl and Zp, and U+0009 to U+000D and U+0085.
[[nodiscard]] bool isBlank(std::string_view text);

/// @return the part of `text` between the blanks, in the same sense, at its ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

}  // namespace tolvane
