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
  Row row = {{line.front()->text}, {line.front()->minX()}, {line.front()->maxX()}};
  for (std::size_t index = 1; index < line.size(); ++index) {
    const PdfGlyph& previous = *line[index - 1];
    const PdfGlyph& glyph = *line[index];
    const double gap = glyph.minX() - previous.maxX();
    if (gap > std::max(cellGap * previous.height, leastCellGap)) {
      row.cells.push_back(glyph.text);
      row.starts.push_back(glyph.minX());
      row.ends.push_back(glyph.maxX());
      continue;
    }
    if (gap > wordGap * previous.height) {
      row.cells.back() += ' ';
    }
    row.cells.back() += glyph.text;
    row.ends.back() = std::max(row.ends.back(), glyph.maxX());
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

bool TableBuilder::standsInColumns(const Row& row, const Row& columns) {
  if (row.cells.size() != columns.cells.size()) {
    return false;
  }
  for (std::size_t index = 0; index < row.cells.size(); ++index) {
    if (row.starts[index] >= columns.ends[index] || columns.starts[index] >= row.ends[index]) {
      return false;
    }
  }
  return true;
}

TableBuilder::Row TableBuilder::columnsOf(const std::vector<std::size_t>& rows) const {
  Row columns = rows_[rows.front()];
  for (const std::size_t number : rows) {
    const Row& row = rows_[number];
    for (std::size_t index = 0; index < columns.starts.size(); ++index) {
      columns.starts[index] = std::min(columns.starts[index], row.starts[index]);
      columns.ends[index] = std::max(columns.ends[index], row.ends[index]);
    }
  }
  return columns;
}

Table TableBuilder::tableOf(const std::vector<std::size_t>& aligned) const {
  const Row columns = columnsOf(aligned);
  Table table;
  for (std::size_t number = aligned.front(); number <= aligned.back(); ++number) {
    const bool isAligned = std::binary_search(aligned.begin(), aligned.end(), number);
    if (isAligned || standsInColumns(rows_[number], columns)) {
      table.push_back(rows_[number].cells);
    }
  }
  return table;
}

Table TableBuilder::table() const {
  for (const Row& anchor : rows_) {
    std::vector<std::size_t> aligned;
    for (std::size_t number = 0; number < rows_.size(); ++number) {
      if (areAligned(anchor, rows_[number])) {
        aligned.push_back(number);
      }
    }
    if (aligned.size() >= 2) {
      return tableOf(aligned);
    }
  }
  return {};
}

}  // namespace tolvane::UniversalEngine
