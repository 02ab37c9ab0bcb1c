#include "formats/delimited_text.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include "engine/primitives/conversion_failure.h"
#include "formats/byte_set.h"
#include "platform/text/text_clusters.h"

namespace tolvane::UniversalFormats {

namespace {

constexpr std::size_t maxRows = 100'000;
constexpr std::size_t maxCellBytes = 999'999;
constexpr std::size_t longRow = 1024;  // cells
constexpr char quote = '"';
constexpr std::string_view lineEnd = "\r\n";

class DelimitedReader {
 public:
  DelimitedReader(std::string_view text, char delimiter)
      : text_(text), delimiter_(delimiter), cellEnds_(std::string({delimiter, '\n', '\r'})) {}

  Table read() {
    while (position_ < text_.size()) {
      if (isQuote()) {
        readQuoted();
      }
      readPlain();
      if (position_ < text_.size()) {
        readCellEnd();
      }
    }
    if (!cell_.empty() || !row_.empty()) {
      finishRow();
    }
    return std::move(rows_);
  }

 private:
  [[nodiscard]] bool isQuote() const {
    return position_ < text_.size() && text_[position_] == quote &&
           TextClusters::isAlone(text_, position_);
  }

  /// From the opening quote to behind the closing one.
  void readQuoted() {
    ++position_;
    while (true) {
      const std::size_t next = std::min(text_.find(quote, position_), text_.size());
      take(next);
      if (next == text_.size()) {
        throw ConversionFailure::message("The delimited file has an unclosed quoted cell.");
      }
      if (!isQuote()) {
        take(next + 1);  // a quote with a combining mark, say
        continue;
      }
      ++position_;
      if (!isQuote()) {
        return;
      }
      take(position_ + 1);
    }
  }

  /// Up to what ends the cell, from its start or from behind a quoted section. Quotes are text
  /// here.
  void readPlain() {
    std::size_t next = cellEnds_.findIn(text_, position_);
    while (next < text_.size() && !TextClusters::isAlone(text_, next)) {
      next = cellEnds_.findIn(text_, next + 1);
    }
    take(next);
  }

  void readCellEnd() {
    const char end = text_[position_++];
    if (end == delimiter_) {
      finishCell();
      return;
    }
    if (end == '\r' && position_ < text_.size() && text_[position_] == '\n') {
      ++position_;
    }
    finishRow();
    require(rows_.size() < maxRows);
  }

  /// Adds the text up to `end` to the cell.
  void take(std::size_t end) {
    const std::string_view part = text_.substr(position_, end - position_);
    require(cell_.size() + part.size() <= maxCellBytes);
    cell_ += part;
    position_ = end;
  }

  void finishCell() {
    if (row_.size() == row_.capacity() && row_.size() >= longRow) {
      growLongRow();
    }
    row_.push_back(std::move(cell_));
    cell_.clear();
  }

  /// Makes room for the rest of the line at once: growing step by step, a row would take up to
  /// three times its memory. Line ends within quotes make it grow again.
  void growLongRow() {
    const std::string_view rest =
        text_.substr(position_, text_.find_first_of("\r\n", position_) - position_);
    const auto cells =
        static_cast<std::size_t>(std::count(rest.begin(), rest.end(), delimiter_)) + 2;
    row_.reserve(row_.size() + std::max(cells, row_.size() / 2));
  }

  /// A short row is moved out cell by cell, so that `row_` keeps its memory for the next one; a
  /// long one goes as a whole, without a second list of its cells.
  void finishRow() {
    finishCell();
    if (row_.size() < longRow) {
      rows_.emplace_back(std::make_move_iterator(row_.begin()),
                         std::make_move_iterator(row_.end()));
    } else {
      rows_.push_back(std::move(row_));
    }
    row_.clear();
  }

  static void require(bool isWithinLimits) {
    if (!isWithinLimits) {
      throw ConversionFailure::message("The table exceeds the row/cell safety limit.");
    }
  }

  std::string_view text_;
  char delimiter_;
  ByteSet cellEnds_;
  std::size_t position_ = 0;
  std::string cell_;
  TableRow row_;
  Table rows_;
};

void appendCell(std::string& text, const std::string& cell, const ByteSet& special) {
  if (special.findIn(cell, 0) == cell.size()) {
    text += cell;
    return;
  }
  text += quote;
  for (const char character : cell) {
    text.append(character == quote ? 2 : 1, character);
  }
  text += quote;
}

}  // namespace

Table csv(std::string_view text, char delimiter) {
  return DelimitedReader(text, delimiter).read();
}

std::string delimited(const Table& rows, char separator) {
  const ByteSet special(std::string({separator, quote, '\n', '\r'}));
  std::string text;
  for (const TableRow& row : rows) {
    for (const std::string& cell : row) {
      if (&cell != &row.front()) {
        text += separator;
      }
      appendCell(text, cell, special);
    }
    text += lineEnd;
  }
  return rows.empty() ? std::string(lineEnd) : text;
}

}  // namespace tolvane::UniversalFormats
