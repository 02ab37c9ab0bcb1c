#pragma once

#include <set>
#include <string_view>

namespace tolvane {

/// Reads a page selection such as "1-3, 5": parts separated by commas, each a page or two pages
/// joined by a hyphen, counted from 1. Spaces and tabs may stand around a part, not inside it.
/// @return indices counted from 0, below `count`; all of them when the text is blank.
/// @throws ConversionFailure when a part is malformed or leaves the document.
[[nodiscard]] std::set<int> pageRange(std::string_view text, int count);

}  // namespace tolvane
