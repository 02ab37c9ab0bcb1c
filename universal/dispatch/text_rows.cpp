#include "universal/dispatch/text_rows.h"

#include <algorithm>
#include <string>

#include "engine/primitives/split_text.h"

namespace tolvane::UniversalEngine {

namespace {

TableRow cellsOf(std::string_view line) {
  TableRow cells;
  if (line.find('\t') != std::string_view::npos) {
    for (const std::string_view piece : split(line, "\t")) {
      cells.emplace_back(piece);
    }
    return cells;
  }
  for (const std::string_view piece : split(line, "  ")) {
    if (const std::string_view cell = unpadded(piece); !cell.empty()) {
      cells.emplace_back(cell);
    }
  }
  return cells;
}

}  // namespace

Table rowsOf(std::string_view text) {
  Table rows;
  for (const std::string_view line : split(text, "\n")) {
    if (!unpadded(line).empty()) {
      rows.push_back(cellsOf(line));
    }
  }
  return rows;
}

bool isConsistent(const Table& rows) {
  return rows.size() >= 2 && rows.front().size() >= 2 &&
         std::all_of(rows.begin(), rows.end(), [&](const TableRow& row) {
           return row.size() == rows.front().size();
         });
}

}  // namespace tolvane::UniversalEngine
