#include "platform/typesetting/pango/line_layout.h"

#include <cstdlib>

namespace tolvane {

namespace {

// What Pango lays out at a time. It measures in 1/1024 points with 32 bits, which a line of a
// million characters overflows: the text would end there without a word. Its time for a piece
// without spaces grows faster than the piece.
constexpr std::size_t pieceLimit = 2048;
// The most of one line. Its time grows with the square: a second for this many bytes of marks on
// one letter.
constexpr std::size_t lengthenedLimit = 16'384;
constexpr double pointsPerInch = 72;

double inPoints(int units) {
  return static_cast<double>(units) / PANGO_SCALE;
}

/// The language of the user, by which characters that several scripts share get their shapes.
PangoLanguage* preferredLanguage() {
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): nobody sets any
    if (value != nullptr && *value != '\0') {
      const std::string locale(value);
      return pango_language_from_string(locale.substr(0, locale.find_first_of(".@")).c_str());
    }
  }
  return pango_language_get_default();
}

/// Text is measured in points, and every glyph stands where the font wants it, not where a screen
/// has pixels.
PangoContext* makeContext(PangoFontMap* fonts, const std::string& font) {
  pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(fonts), pointsPerInch);
  PangoContext* context = pango_font_map_create_context(fonts);
  pango_context_set_round_glyph_positions(context, FALSE);
  pango_context_set_language(context, preferredLanguage());
  PangoFontDescription* description = pango_font_description_from_string(font.c_str());
  pango_context_set_font_description(context, description);
  pango_font_description_free(description);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  pango_cairo_context_set_font_options(context, options);
  cairo_font_options_destroy(options);
  return context;
}

PangoLayout* makeLayout(PangoContext* context, double width) {
  PangoLayout* layout = pango_layout_new(context);
  pango_layout_set_width(layout, pango_units_from_double(width));
  pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
  // A word that is cut must not gain a hyphen that the text does not have.
  PangoAttrList* attributes = pango_attr_list_new();
  pango_attr_list_insert(attributes, pango_attr_insert_hyphens_new(FALSE));
  pango_layout_set_attributes(layout, attributes);
  pango_attr_list_unref(attributes);
  return layout;
}

}  // namespace

LineLayout::LineLayout(std::string_view text, double width, const std::string& font)
    : pieces_(text, pieceLimit),
      width_(width),
      fonts_(pango_cairo_font_map_new()),
      context_(makeContext(fonts_.get(), font)),
      layout_(makeLayout(context_.get(), width)),
      latinLines_(layout_.get()) {}

/// A paragraph goes from right to left when its first letter does, however many pieces it has.
void LineLayout::prepareDirection() {
  const bool startsParagraph = end_ == PieceEnd::paragraph || end_ == PieceEnd::page;
  if (startsParagraph) {
    pango_context_set_base_dir(context_.get(), PANGO_DIRECTION_WEAK_LTR);
    direction_ = PANGO_DIRECTION_LTR;  // of plain Latin text
  } else {
    pango_context_set_base_dir(context_.get(), direction_);
  }
  pango_layout_set_auto_dir(layout_.get(), startsParagraph ? TRUE : FALSE);
}

void LineLayout::layOut(const TextPieces::Piece& piece) {
  piece_ = piece.text;
  end_ = piece.end;
  isLatin_ = direction_ == PANGO_DIRECTION_LTR && latinLines_.layOut(piece_);
  if (isLatin_) {
    nextLatin_ = 0;
    remaining_ = latinLines_.count();
  } else {
    layOutByPango(piece);
  }
}

void LineLayout::layOutByPango(const TextPieces::Piece& piece) {
  pango_layout_set_text(layout_.get(), piece.text.data(), static_cast<int>(piece.text.size()));
  line_ = pango_layout_get_lines_readonly(layout_.get());
  remaining_ = pango_layout_get_line_count(layout_.get());
  const auto* first = static_cast<const PangoLayoutLine*>(line_->data);
  direction_ = static_cast<PangoDirection>(first->resolved_dir);
}

void LineLayout::layOutNextPiece() {
  prepareDirection();
  startsPage_ = end_ == PieceEnd::page;
  TextPieces::Piece piece = pieces_.next();
  layOut(piece);
  // Marks and characters without width can fill a piece and not a line.
  while (end_ == PieceEnd::none && remaining_ == 1 && piece.text.size() <= lengthenedLimit / 2) {
    piece = pieces_.lengthened();
    layOut(piece);
  }
  if (end_ == PieceEnd::none && remaining_ > 1) {
    keepCutLineForLater(piece);
  }
}

void LineLayout::keepCutLineForLater(const TextPieces::Piece& piece) {
  const int last = remaining_ - 1;
  const std::size_t start =
      isLatin_ ? latinLines_.start(last)
               : static_cast<std::size_t>(
                     pango_layout_get_line_readonly(layout_.get(), last)->start_index);
  pieces_.putBack(piece.text.size() - start);
  --remaining_;
}

TextLine LineLayout::next() {
  if (remaining_ == 0) {
    layOutNextPiece();
  }
  TextLine line = isLatin_ ? latinLine() : pangoLine();
  line.startsPage = startsPage_;
  return line;
}

TextLine LineLayout::latinLine() {
  const PangoRectangle& extents = latinLines_.extents();
  return {.glyphs = latinLines_.glyphs(nextLatin_),
          .text = piece_.data() + latinLines_.start(nextLatin_),
          .height = inPoints(extents.height),
          .baseline = -inPoints(extents.y)};
}

TextLine LineLayout::pangoLine() {
  TextLine line;
  line.line = static_cast<PangoLayoutLine*>(line_->data);
  PangoRectangle extents = {};
  pango_layout_line_get_extents(line.line, nullptr, &extents);
  if (line.line->resolved_dir == PANGO_DIRECTION_RTL) {
    line.left = width_ - inPoints(extents.width);
  }
  line.height = inPoints(extents.height);
  line.baseline = -inPoints(extents.y);
  return line;
}

void LineLayout::take() {
  --remaining_;
  startsPage_ = false;
  if (isLatin_) {
    ++nextLatin_;
  } else if (remaining_ > 0) {
    line_ = line_->next;
  }
}

}  // namespace tolvane
