#pragma once

#include <string_view>

#include "formats/table.h"

namespace tolvane::UniversalEngine {

/// The table that a text spells: a line with tabs is split at each, any other where two spaces
/// stand together. Blank lines are left out.
/// @param text lines end in line feeds.
[[nodiscard]] Table rowsOf(std::string_view text);

/// @return whether there are at least 2 rows, all of the same number of cells, which is at least 2.
[[nodiscard]] bool isConsistent(const Table& rows);

}  // namespace tolvane::UniversalEngine
