#pragma once

#include <string>
#include <string_view>

#include "formats/table.h"

namespace tolvane::UniversalFormats {

/// Reads comma- or tab-separated values. Quotes open a quoted section only at the very start of a
/// cell; cells are not trimmed. A delimiter, quote or line end counts only where it is a character
/// (grapheme cluster) by itself: a comma with a combining mark is text.
/// @param text well-formed UTF-8.
/// @param delimiter ',' or '\t'.
/// @throws ConversionFailure at the 100,000th row that a line end completes, for a cell of more
/// than 999,999 bytes, and for a quoted cell that is not closed.
[[nodiscard]] Table csv(std::string_view text, char delimiter);

/// Writes rows that csv() reads, but for characters that combine with the quote or delimiter beside
/// them: these stand where other programs expect them. Every row ends with CR LF; no rows give one
/// line end.
/// @param separator ',' or '\t'.
[[nodiscard]] std::string delimited(const Table& rows, char separator);

}  // namespace tolvane::UniversalFormats
