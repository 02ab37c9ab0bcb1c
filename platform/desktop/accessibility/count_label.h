#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What file managers write about the selection, in any language: "2 folders selected (containing
/// 5 items), 3 other items selected (1 kB)", "“a.txt” selected (2 bytes)".
namespace tolvane::CountLabel {

/// @return whether the label may stand for that many selected items: its first number, or the
/// sum of the first two, is the count; or it names the only item. What stands in brackets does not
/// count. A shortened label ("1 Folder…5 kB)") need only not contradict.
/// @param names of the items, at least one.
[[nodiscard]] bool confirms(std::string_view label, const std::vector<std::string>& names);

/// @return the name that the label gives of a single item: what stands between its first and its
/// last quotation mark; empty when there is none.
[[nodiscard]] std::string quotedName(std::string_view label);

}  // namespace tolvane::CountLabel
