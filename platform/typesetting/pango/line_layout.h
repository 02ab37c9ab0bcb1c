#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <pango/pangocairo.h>

#include "platform/typesetting/pango/latin_lines.h"
#include "platform/typesetting/text_pieces.h"

namespace tolvane {

/// One line, ready to be drawn. Lengths in points.
struct TextLine {
  PangoLayoutLine* line = nullptr;   ///< until it is taken; null when the glyphs are there
  PangoGlyphItem* glyphs = nullptr;  ///< of plain Latin text, until it is taken
  const char* text = nullptr;        ///< of the glyphs
  double left = 0;                   ///< where it begins, from the left edge of the text
  double height = 0;
  double baseline = 0;  ///< below its top
  bool startsPage = false;
};

/// Breaks a text into lines of one width, in order, each laid out once.
class LineLayout {
 public:
  /// @param text UTF-8; not owned.
  /// @param width in points. @param font as PageStyle has it.
  LineLayout(std::string_view text, double width, const std::string& font);

  /// @return whether no line is left.
  [[nodiscard]] bool atEnd() const { return remaining_ == 0 && pieces_.atEnd(); }
  /// The next line. Not at the end.
  [[nodiscard]] TextLine next();
  /// Goes on to the line after the one that next() gave.
  void take();

 private:
  struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
  };

  void prepareDirection();
  void layOutNextPiece();
  void layOut(const TextPieces::Piece& piece);
  void layOutByPango(const TextPieces::Piece& piece);
  void keepCutLineForLater(const TextPieces::Piece& piece);
  [[nodiscard]] TextLine latinLine();
  [[nodiscard]] TextLine pangoLine();

  TextPieces pieces_;
  double width_;
  std::unique_ptr<PangoFontMap, Unref> fonts_;
  std::unique_ptr<PangoContext, Unref> context_;
  std::unique_ptr<PangoLayout, Unref> layout_;
  LatinLines latinLines_;
  std::string_view piece_;
  bool isLatin_ = false;    // the piece stands in latinLines_, else in layout_
  GSList* line_ = nullptr;  // in layout_; the next one
  int nextLatin_ = 0;       // in latinLines_
  int remaining_ = 0;       // lines that are still to be taken
  PangoDirection direction_ = PANGO_DIRECTION_LTR;  // of the piece
  PieceEnd end_ = PieceEnd::paragraph;              // of the piece
  bool startsPage_ = false;
};

}  // namespace tolvane
