#pragma once

#include <filesystem>

#include "engine/primitives/cancellation_token.h"
#include "formats/table.h"
#include "universal/toolchain/local_toolchain.h"

namespace tolvane::UniversalFormats {

/// Writes a table as a spreadsheet (.xlsx) with one sheet, "Extracted table", whose cells are all
/// text. The engine "zip" packs it.
/// @param rows 1 to 100,000, of at most 16,384 cells.
/// @param to in the workspace, absolute.
/// @param workspace absolute. What is written there meanwhile is gone afterwards, except a part of
/// `to` after a failure.
/// @throws ConversionFailure when the table is out of bounds or cancellation was requested, and as
/// LocalToolchain::run; PlatformError when a file cannot be written.
void workbook(const Table& rows,
              const std::filesystem::path& to,
              const std::filesystem::path& workspace,
              const LocalToolchain& toolchain,
              const CancellationToken& token);

}  // namespace tolvane::UniversalFormats
