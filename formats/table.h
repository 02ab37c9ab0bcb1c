#pragma once

#include <string>
#include <vector>

namespace tolvane {

/// The cells of one row, in UTF-8.
using TableRow = std::vector<std::string>;

/// Rows of cells, all of them text. Rows may differ in length; nothing pads them.
using Table = std::vector<TableRow>;

}  // namespace tolvane
