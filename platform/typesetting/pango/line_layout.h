#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <pango/pangocairo.h>

#include "platform/typesetting/text_pieces.h"

namespace tolvane {

/// One line, ready to be drawn. Lengths in points.
struct TextLine {
  PangoLayoutLine* line = nullptr;  ///< the layout's, until it is taken
  double left = 0;                  ///< where it begins, from the left edge of the text
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
  void keepCutLineForLater(const TextPieces::Piece& piece);

  TextPieces pieces_;
  double width_;
  std::unique_ptr<PangoFontMap, Unref> fonts_;
  std::unique_ptr<PangoContext, Unref> context_;
  std::unique_ptr<PangoLayout, Unref> layout_;
  GSList* line_ = nullptr;              // in layout_; the next one
  int remaining_ = 0;                   // lines of layout_ that are still to be taken
  PieceEnd end_ = PieceEnd::paragraph;  // of the piece in layout_
  bool startsPage_ = false;
};

}  // namespace tolvane
