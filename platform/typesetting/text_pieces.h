#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tolvane {

/// What comes after a piece of text.
enum class PieceEnd {
  none,       ///< more of the same line
  line,       ///< a new line of the same paragraph: U+2028, vertical tab
  paragraph,  ///< a new paragraph: LF, CR, CR LF, U+0085, U+2029; so does the end of the text
  page        ///< a new page: form feed
};

/// Divides a text into pieces that can be laid out on their own. Control characters that mean
/// nothing to a reader are left out, NUL among them; tabs stay.
class TextPieces {
 public:
  /// @param text UTF-8; not owned.
  /// @param limit the bytes after which a line is cut, between characters; at least the 4 that a
  /// character can have.
  TextPieces(std::string_view text, std::size_t limit) : text_(text), limit_(limit) {}

  /// @return whether nothing is left. A break at the very end is not followed by an empty piece.
  [[nodiscard]] bool atEnd() const { return position_ == text_.size() && returned_ == 0; }

  struct Piece {
    std::string_view text;  ///< until the next call of next()
    PieceEnd end = PieceEnd::paragraph;
  };
  [[nodiscard]] Piece next();
  /// The last piece, which ended with `none`, once more, with as many bytes again of what follows.
  [[nodiscard]] Piece lengthened();

  /// The last `bytes` bytes of the last piece, which ended with `none`, begin the next one.
  void putBack(std::size_t bytes) { returned_ = bytes; }

 private:
  [[nodiscard]] Piece filled(std::size_t limit);

  std::string_view text_;
  std::size_t limit_;
  std::size_t position_ = 0;
  std::string piece_;
  std::size_t returned_ = 0;  // bytes at the end of piece_
};

}  // namespace tolvane
