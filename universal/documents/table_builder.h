#pragma once

#include <cstddef>
#include <vector>

#include "formats/table.h"
#include "platform/documents/pdf_glyph.h"

namespace tolvane::UniversalEngine {

/// Finds a table in the positions of characters: rows of cells that stand apart, whose beginnings
/// are aligned with those of another row. Lengths in points.
class TableBuilder {
 public:
  /// Adds the rows of a page. Blank glyphs and those without an area are passed over.
  /// @param glyphs in the reading order of the page.
  void addPage(const std::vector<PdfGlyph>& glyphs);

  /// The rows, of all pages, that are aligned with the first row that has a companion, and those
  /// between them whose cells stand in the same columns, such as numbers of other lengths that end
  /// at one edge. Empty when no two rows are aligned.
  [[nodiscard]] Table table() const;

 private:
  /// The glyphs of one text line, in reading order.
  using Line = std::vector<const PdfGlyph*>;

  struct Row {
    TableRow cells;
    std::vector<double> starts;  ///< of each cell, the left edge of its first glyph
    std::vector<double> ends;    ///< of each cell, its right edge
  };

  [[nodiscard]] static std::vector<Line> lines(const std::vector<PdfGlyph>& glyphs);
  [[nodiscard]] static Row row(Line line);
  [[nodiscard]] static bool areAligned(const Row& one, const Row& other);

  [[nodiscard]] static bool standsInColumns(const Row& row, const Row& columns);
  /// @param rows numbers of rows with equally many cells. @return the span of each column
  [[nodiscard]] Row columnsOf(const std::vector<std::size_t>& rows) const;
  /// @param aligned numbers of rows, in order.
  [[nodiscard]] Table tableOf(const std::vector<std::size_t>& aligned) const;

  std::vector<Row> rows_;
};

}  // namespace tolvane::UniversalEngine
