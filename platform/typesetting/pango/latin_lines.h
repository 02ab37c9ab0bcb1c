#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include <pango/pangocairo.h>

#include "platform/typesetting/pango/word_glyphs.h"

namespace tolvane {

/// Breaks plain Latin text into the lines that a PangoLayout makes of it, glyph for glyph, from
/// words that were shaped before: in a third of the time. What it cannot be sure of is left to the
/// layout.
class LatinLines {
 public:
  /// @param layout gives font and width; not owned. Its text is changed.
  explicit LatinLines(PangoLayout* layout);

  /// Lays out a piece of a paragraph that goes from left to right.
  /// @param piece UTF-8; not owned, outlives the drawing of its lines.
  /// @return whether that was possible.
  [[nodiscard]] bool layOut(std::string_view piece);

  [[nodiscard]] int count() const { return static_cast<int>(lines_.size()); }
  /// Where a line begins in the piece.
  [[nodiscard]] std::size_t start(int line) const;
  /// The glyphs of a line. @return until the next call.
  [[nodiscard]] PangoGlyphItem* glyphs(int line);
  /// The extents of every line.
  [[nodiscard]] const PangoRectangle& extents() const { return extents_; }

 private:
  struct Part {
    const Word* word = nullptr;
    std::size_t start = 0;  // in the piece
    int character = 0;      // the same in characters
  };
  struct Line {
    std::size_t firstPart = 0;
    std::size_t endPart = 0;  // the same while the line cannot end
    int width = 0;            // Pango units
  };

  [[nodiscard]] std::size_t end() const { return parts_.size() - 1; }
  [[nodiscard]] bool divide();
  [[nodiscard]] bool breakLines();
  [[nodiscard]] bool fillLines(Line& line);
  [[nodiscard]] int hangingWidth(std::size_t part) const;
  [[nodiscard]] bool canBreakBefore(int character) const;
  [[nodiscard]] bool canBreakBetween(std::size_t first, std::size_t second) const;
  void findBreaks();

  PangoLayout* layout_;
  int width_;  // Pango units
  PangoRectangle extents_ = {};
  ItemPointer item_;  // null where the first letter is nothing to go by
  std::unique_ptr<WordGlyphs> words_;
  std::string_view piece_;
  std::vector<Part> parts_;           // the last one is empty
  std::vector<PangoLogAttr> breaks_;  // before each character
  std::vector<Line> lines_;
  GlyphsPointer glyphs_;
  PangoGlyphItem glyphItem_ = {};
};

}  // namespace tolvane
