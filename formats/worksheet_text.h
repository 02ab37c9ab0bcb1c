#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "formats/table.h"

/// The one sheet of a workbook in SpreadsheetML (ECMA-376 Part 1): an opening, rows and a closing.
namespace tolvane::WorksheetText {

inline constexpr std::string_view opening =
    R"(<?xml version="1.0"?>)"
    R"(<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><sheetData>)";
inline constexpr std::string_view closing = "</sheetData></worksheet>";

/// Every cell is an inline string, so that no reader takes it for a number, a date or a formula.
/// @param number from 1.
void appendRow(std::string& text, std::size_t number, const TableRow& row);

}  // namespace tolvane::WorksheetText
