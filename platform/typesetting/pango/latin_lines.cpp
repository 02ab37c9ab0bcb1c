#include "platform/typesetting/pango/latin_lines.h"

#include <algorithm>

namespace tolvane {

namespace {

ItemPointer itemOf(const PangoLayoutLine* line) {
  const bool isOneRun = line->runs != nullptr && line->runs->next == nullptr;
  return ItemPointer(
      isOneRun ? pango_item_copy(static_cast<const PangoGlyphItem*>(line->runs->data)->item)
               : nullptr);
}

void append(const Word& word, std::size_t start, int& count, PangoGlyphString& glyphs) {
  const PangoGlyphString& added = *word.glyphs;
  std::copy_n(added.glyphs, added.num_glyphs, glyphs.glyphs + count);
  std::transform(added.log_clusters,
                 added.log_clusters + added.num_glyphs,
                 glyphs.log_clusters + count,
                 [start](int cluster) { return cluster + static_cast<int>(start); });
  count += added.num_glyphs;
}

}  // namespace

LatinLines::LatinLines(PangoLayout* layout)
    : layout_(layout), width_(pango_layout_get_width(layout)), glyphs_(pango_glyph_string_new()) {
  pango_layout_set_text(layout_, "a", 1);
  PangoLayoutLine* line = pango_layout_get_line_readonly(layout_, 0);
  pango_layout_line_get_extents(line, nullptr, &extents_);
  item_ = itemOf(line);
  if (item_ != nullptr) {
    words_ = std::make_unique<WordGlyphs>(pango_layout_get_context(layout_), *item_);
  }
}

bool LatinLines::layOut(std::string_view piece) {
  piece_ = piece;
  return words_ != nullptr && divide() && breakLines();
}

/// Divides the piece into words and spaces. @return false when not all of it is plain Latin text.
bool LatinLines::divide() {
  parts_.clear();
  bool hasLetter = false;  // without one, the text is of no script and may be shaped otherwise
  Part part;
  while (part.start < piece_.size()) {
    const std::size_t space = std::min(piece_.find(' ', part.start), piece_.size());
    const std::size_t length = std::max<std::size_t>(space - part.start, 1);
    part.word = words_->find(piece_.substr(part.start, length));
    if (part.word == nullptr) {
      return false;
    }
    hasLetter = hasLetter || part.word->hasLetter;
    parts_.push_back(part);
    part = {nullptr, part.start + length, part.character + part.word->characters};
  }
  parts_.push_back(part);
  return hasLetter;
}

bool LatinLines::breakLines() {
  lines_.clear();
  int width = 0;
  for (std::size_t part = 0; part < end(); ++part) {
    width += parts_[part].word->width;
  }
  Line line;
  if (width > width_) {
    findBreaks();
    if (!fillLines(line)) {
      return false;
    }
  }
  lines_.push_back({.firstPart = line.firstPart, .endPart = end()});
  return true;
}

/// Ends every line at the last place where it may end and fits. @return false when one could end
/// within a word, whose glyphs need not stay the same then.
/// @param line becomes the last one.
bool LatinLines::fillLines(Line& line) {
  int width = 0;  // from the start of the line to the part that is looked at
  for (std::size_t part = 0; part <= end(); ++part) {
    while (width - hangingWidth(part) > width_) {
      if (line.firstPart == line.endPart || canBreakBetween(line.endPart, part)) {
        return false;
      }
      lines_.push_back(line);
      width -= line.width;
      line = {.firstPart = line.endPart, .endPart = line.endPart};
    }
    if (canBreakBefore(parts_[part].character)) {
      line.endPart = part;
      line.width = width;
    }
    width += part < end() ? parts_[part].word->width : 0;
  }
  // Whether a last space that does not fit counts is for Pango to say.
  return width <= width_;
}

/// The space before a break does not count.
int LatinLines::hangingWidth(std::size_t part) const {
  const bool followsSpace = part > 0 && piece_[parts_[part].start - 1] == ' ';
  return followsSpace ? parts_[part - 1].word->width : 0;
}

bool LatinLines::canBreakBefore(int character) const {
  return breaks_[static_cast<std::size_t>(character)].is_line_break != 0;
}

/// @return whether a line could end after the start of one part and before that of another.
bool LatinLines::canBreakBetween(std::size_t first, std::size_t second) const {
  for (int character = parts_[first].character + 1; character < parts_[second].character;
       ++character) {
    if (canBreakBefore(character)) {
      return true;
    }
  }
  return false;
}

void LatinLines::findBreaks() {
  breaks_.resize(static_cast<std::size_t>(parts_.back().character) + 1);
  pango_get_log_attrs(piece_.data(),
                      static_cast<int>(piece_.size()),
                      item_->analysis.level,
                      item_->analysis.language,
                      breaks_.data(),
                      static_cast<int>(breaks_.size()));
}

std::size_t LatinLines::start(int line) const {
  return parts_[lines_[static_cast<std::size_t>(line)].firstPart].start;
}

PangoGlyphItem* LatinLines::glyphs(int line) {
  const Line& wanted = lines_[static_cast<std::size_t>(line)];
  const std::size_t start = parts_[wanted.firstPart].start;
  int count = 0;
  for (std::size_t part = wanted.firstPart; part < wanted.endPart; ++part) {
    count += parts_[part].word->glyphs->num_glyphs;
  }
  pango_glyph_string_set_size(glyphs_.get(), count);
  count = 0;
  for (std::size_t part = wanted.firstPart; part < wanted.endPart; ++part) {
    append(*parts_[part].word, parts_[part].start - start, count, *glyphs_);
  }
  const Part& next = parts_[wanted.endPart];
  if (line + 1 < this->count() && piece_[next.start - 1] == ' ') {
    glyphs_->glyphs[count - 1].glyph = PANGO_GLYPH_EMPTY;
    glyphs_->glyphs[count - 1].geometry.width = 0;
  }
  item_->length = static_cast<int>(next.start - start);
  item_->num_chars = next.character - parts_[wanted.firstPart].character;
  glyphItem_.item = item_.get();
  glyphItem_.glyphs = glyphs_.get();
  return &glyphItem_;
}

}  // namespace tolvane
