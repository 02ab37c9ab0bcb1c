#pragma once

#include <string>
#include <string_view>

/// Text in the order in which it is seen, from left to right, as pages that were set store it.
namespace tolvane::VisualText {

/// Whether this is a letter that is written from right to left.
[[nodiscard]] bool isRightToLeft(char32_t letter);

/// Whether more letters of the text are written from right to left than from left to right.
[[nodiscard]] bool isRightToLeft(std::string_view text);

/// The order in which the text is read and stored: the reverse of the Unicode Bidirectional
/// Algorithm. Text without a letter that is written from right to left is returned as it is.
/// @param visual one line in UTF-8, its leftmost character first.
[[nodiscard]] std::string logicalOrder(std::string visual);

}  // namespace tolvane::VisualText
