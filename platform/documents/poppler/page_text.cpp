#include "platform/documents/poppler/page_text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "platform/documents/poppler/text_segment.h"
#include "platform/text/utf16_joiner.h"
#include "platform/text/visual_text.h"

namespace tolvane {

namespace {

using Segments = std::vector<TextSegment>;

/// Segments that stand beside each other, from left to right.
using Row = std::vector<const TextSegment*>;

// A line that is wider, in parts of its height, is prose rather than a cell.
constexpr double proseWidth = 12;

// How far the middles of one row's cells stand apart, in parts of their height.
constexpr double levelTolerance = 0.2;

// Of one table; with more, its columns follow each other.
constexpr std::size_t mostCells = 2000;

/// Segments of one table, one column after the other.
struct Cells {
  std::size_t begin;
  std::size_t end;
};

bool shareRow(const TextSegment& one, const TextSegment& other) {
  return one.course == Course::across && other.course == Course::across &&
         Boxes::shareRow(one.box, other.box);
}

bool standBeside(const TextSegment& one, const TextSegment& other) {
  return shareRow(one, other) && Boxes::gapBeside(one.box, other.box) > 0;
}

/// @return where the cells begin that the one at `cell` stands beside; `cell` when there are none.
std::size_t tableBefore(const Segments& segments, std::size_t cell, std::size_t first) {
  const std::size_t end = cell - std::min(cell - first, mostCells);
  const TextBox& box = segments[cell].box;
  std::size_t begin = cell;
  for (std::size_t index = cell; index-- > end && segments[index].box.y2 > box.y1;) {
    begin = index;
  }
  return begin < cell && shareRow(segments[begin], segments[cell]) ? begin : cell;
}

bool isWithinRows(const Segments& segments, const Cells& cells, const TextSegment& next) {
  const double middle = (next.box.y1 + next.box.y2) / 2;
  double top = middle;
  double bottom = middle;
  for (std::size_t index = cells.begin; index < cells.end; ++index) {
    const TextSegment& known = segments[index];
    if (shareRow(known, next) && !standBeside(known, next)) {
      return false;  // over another: no cell of this table
    }
    top = std::min(top, known.box.y1);
    bottom = std::max(bottom, known.box.y2);
  }
  return top < middle && middle < bottom;
}

/// @return the table whose next column begins with the given cell; empty when there is none.
Cells tableAround(const Segments& segments, std::size_t cell, std::size_t first) {
  Cells cells = {tableBefore(segments, cell, first), cell};
  if (cells.begin == cell) {
    return cells;
  }
  while (cells.end < segments.size() && cells.end - cells.begin < mostCells &&
         isWithinRows(segments, cells, segments[cells.end])) {
    ++cells.end;
  }
  return cells;
}

/// The rows of the segments, from top to bottom.
std::vector<Row> rowsOf(const Segments& segments, const Cells& cells) {
  std::vector<const TextSegment*> sorted;
  for (std::size_t index = cells.begin; index < cells.end; ++index) {
    sorted.push_back(&segments[index]);
  }
  std::stable_sort(sorted.begin(), sorted.end(), [](const auto* one, const auto* other) {
    return one->box.y1 + one->box.y2 < other->box.y1 + other->box.y2;
  });
  std::vector<Row> rows;
  for (const TextSegment* segment : sorted) {
    if (rows.empty() || !shareRow(*rows.back().front(), *segment)) {
      rows.emplace_back();
    }
    rows.back().push_back(segment);
  }
  for (Row& row : rows) {
    std::stable_sort(row.begin(), row.end(), [](const auto* one, const auto* other) {
      return one->box.x1 < other->box.x1;
    });
  }
  return rows;
}

bool isProse(const TextSegment* segment) {
  return segment->width() > proseWidth * segment->height();
}

/// Whether the cells of a row stand on one line, as those of a table do.
bool areLevel(const Row& row) {
  return std::all_of(row.begin(), row.end(), [&](const TextSegment* segment) {
    return std::abs(segment->middle() - row.front()->middle()) <
           levelTolerance * row.front()->height();
  });
}

/// Whether the rows are those of a table, and not lines of columns of prose, which are read one
/// column after the other.
bool areOfTable(const std::vector<Row>& rows) {
  std::ptrdiff_t shared = 0;
  std::ptrdiff_t level = 0;
  std::ptrdiff_t prose = 0;
  for (const Row& row : rows) {
    if (row.size() > 1) {
      ++shared;
      level += areLevel(row) ? 1 : 0;
      prose += std::count_if(row.begin(), row.end(), isProse) > 1 ? 1 : 0;
    }
  }
  return shared * 2 >= static_cast<std::ptrdiff_t>(rows.size()) && level * 3 >= shared * 2 &&
         prose * 3 <= shared;
}

class TextWriter {
 public:
  explicit TextWriter(const PageCharacters& characters)
      : characters_(characters), isDirected_(hasRightToLeft(characters)) {}

  std::string take() { return std::move(text_); }

  void writeRow(const Row& row) {
    if (!text_.empty()) {
      text_ += '\n';
    }
    if (isDirected_) {
      writeDirectedRow(row);
      return;
    }
    for (std::size_t index = 0; index < row.size(); ++index) {
      text_ += index > 0 ? "\t" : "";
      append(*row[index], text_);
    }
  }

 private:
  static bool hasRightToLeft(const PageCharacters& characters) {
    return std::any_of(characters.begin(), characters.end(), [](const PageCharacter& character) {
      return VisualText::isRightToLeft(character.code);
    });
  }

  void writeDirectedRow(const Row& row) {
    std::vector<std::string> cells;
    std::string all;
    for (const TextSegment* segment : row) {
      std::string seen;
      append(*segment, seen);
      all += cells.emplace_back(VisualText::logicalOrder(std::move(seen)));
    }
    if (VisualText::isRightToLeft(all)) {
      std::reverse(cells.begin(), cells.end());
    }
    for (std::size_t index = 0; index < cells.size(); ++index) {
      text_ += index > 0 ? "\t" : "";
      text_ += cells[index];
    }
  }

  void append(const TextSegment& segment, std::string& text) const {
    const PageCharacter* last = nullptr;
    for (std::size_t index = segment.begin; index < segment.end; ++index) {
      const PageCharacter& character = characters_[index];
      if (last != nullptr && !last->isBlank() && !character.isBlank() &&
          Boxes::areWordsApart(*last, character)) {
        text += ' ';
      }
      appendUtf8(character.code, text);
      last = &character;
    }
  }

  const PageCharacters& characters_;
  bool isDirected_;
  std::string text_;
};

/// @return past the segments that stand beside the first one and follow it.
std::size_t rowEnd(const Segments& segments, std::size_t begin, std::size_t limit) {
  std::size_t end = begin + 1;
  while (end < limit && standBeside(segments[end - 1], segments[end])) {
    ++end;
  }
  return end;
}

/// The tables whose columns poppler read one after the other, in the order of their segments.
std::vector<Cells> tablesOf(const Segments& segments) {
  std::vector<Cells> tables;
  std::size_t first = 0;
  for (std::size_t index = 0; index < segments.size(); ++index) {
    if (index == 0 || index < first || segments[index].joint != Joint::block) {
      continue;
    }
    const Cells table = tableAround(segments, index, first);
    if (table.end > index && areOfTable(rowsOf(segments, table))) {
      tables.push_back(table);
      first = table.end;
    }
  }
  return tables;
}

}  // namespace

std::string textOf(const PageCharacters& page) {
  const Segments segments = segmentsOf(page);
  const std::vector<Cells> tables = tablesOf(segments);
  auto table = tables.begin();
  TextWriter writer(page);
  for (Cells next = {0, 0}; next.begin < segments.size(); next.begin = next.end) {
    if (table != tables.end() && table->begin == next.begin) {
      next = *table++;
    } else {
      const std::size_t limit = table != tables.end() ? table->begin : segments.size();
      next.end = rowEnd(segments, next.begin, limit);
    }
    for (const Row& row : rowsOf(segments, next)) {
      writer.writeRow(row);
    }
  }
  return writer.take();
}

}  // namespace tolvane
