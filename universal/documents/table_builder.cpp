#include "universal/documents/table_builder.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>

#include "engine/primitives/blank_text.h"
#include "platform/text/visual_text.h"

namespace tolvane::UniversalEngine {

namespace {

// In parts of a glyph's height.
constexpr double lineTolerance = 0.35;
constexpr double cellGap = 0.9;
constexpr double wordGap = 0.12;

// In points.
constexpr double leastLineTolerance = 2.0;
constexpr double leastCellGap = 10.0;
constexpr double columnTolerance = 12.0;

bool isVisible(const PdfGlyph& glyph) {
  return glyph.width > 0 && glyph.height > 0 && !isBlank(glyph.text);
}

/// @param first the first glyph of the line.
bool standsOnLine(const PdfGlyph& glyph, const PdfGlyph& first) {
  return std::abs(first.midY() - glyph.midY()) <
         std::max(lineTolerance * glyph.height, leastLineTolerance);
}

}  // namespace

void TableBuilder::addPage(const std::vector<PdfGlyph>& glyphs) {
  for (Line& line : lines(glyphs)) {
    Row candidate = row(std::move(line));
    if (candidate.cells.size() >= 2) {
      rows_.push_back(std::move(candidate));
    }
  }
}

std::vector<TableBuilder::Line> TableBuilder::lines(const std::vector<PdfGlyph>& glyphs) {
  std::vector<Line> lines;
  for (const PdfGlyph& glyph : glyphs) {
    if (!isVisible(glyph)) {
      continue;
    }
    const auto found = std::find_if(lines.rbegin(), lines.rend(), [&](const Line& line) {
      return standsOnLine(glyph, *line.front());
    });
    Line& line = found != lines.rend() ? *found : lines.emplace_back();
    line.push_back(&glyph);
  }
  return lines;
}

TableBuilder::Row TableBuilder::row(Line line) {
  std::stable_sort(line.begin(), line.end(), [](const PdfGlyph* left, const PdfGlyph* right) {
    return left->minX() < right->minX();
  });
  Row row = {{line.front()->text}, {line.front()->minX()}};
  for (std::size_t index = 1; index < line.size(); ++index) {
    const PdfGlyph& previous = *line[index - 1];
    const PdfGlyph& glyph = *line[index];
    const double gap = glyph.minX() - previous.maxX();
    if (gap > std::max(cellGap * previous.height, leastCellGap)) {
      row.cells.push_back(glyph.text);
      row.starts.push_back(glyph.minX());
      continue;
    }
    if (gap > wordGap * previous.height) {
      row.cells.back() += ' ';
    }
    row.cells.back() += glyph.text;
  }
  for (std::string& cell : row.cells) {
    cell = VisualText::logicalOrder(std::move(cell));
  }
  return row;
}

bool TableBuilder::areAligned(const Row& one, const Row& other) {
  return std::equal(
      one.starts.begin(),
      one.starts.end(),
      other.starts.begin(),
      other.starts.end(),
      [](double left, double right) { return std::abs(left - right) <= columnTolerance; });
}

Table TableBuilder::table() const {
  for (const Row& anchor : rows_) {
    Table table;
    for (const Row& row : rows_) {
      if (areAligned(anchor, row)) {
        table.push_back(row.cells);
      }
    }
    if (table.size() >= 2) {
      return table;
    }
  }
  return {};
}

}  // namespace tolvane::UniversalEngine
