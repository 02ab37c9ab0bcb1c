#include "platform/typesetting/text_pieces.h"

#include <algorithm>
#include <optional>

namespace tolvane {

namespace {

/// One character, or the two of a CR LF, at the start of a text.
struct Symbol {
  std::size_t length = 0;  ///< bytes
  std::optional<PieceEnd> end = std::nullopt;
  bool isShown = false;
};

constexpr unsigned char firstPrintable = 0x20;
constexpr unsigned char deleteControl = 0x7F;
constexpr std::string_view nextLine = "\u0085";
constexpr std::string_view lineSeparator = "\u2028";
constexpr std::string_view paragraphSeparator = "\u2029";
constexpr std::string_view afterControls = "\u00A0";  // U+0080 to U+009F are controls

std::size_t lengthOf(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  return std::min(length, text.size());
}

Symbol controlAt(std::string_view text) {
  switch (text.front()) {
    case '\t':
      return {.length = 1, .isShown = true};
    case '\n':
      return {1, PieceEnd::paragraph};
    case '\r':
      return {text.starts_with("\r\n") ? std::size_t{2} : std::size_t{1}, PieceEnd::paragraph};
    case '\v':
      return {1, PieceEnd::line};
    case '\f':
      return {1, PieceEnd::page};
    default:
      return {1};
  }
}

Symbol symbolAt(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < firstPrintable || lead == deleteControl) {
    return controlAt(text);
  }
  const std::string_view character = text.substr(0, lengthOf(text));
  if (character == nextLine || character == paragraphSeparator) {
    return {character.size(), PieceEnd::paragraph};
  }
  if (character == lineSeparator) {
    return {character.size(), PieceEnd::line};
  }
  const bool isControl = character.size() == 2 && character < afterControls;
  return {.length = character.size(), .isShown = !isControl};
}

}  // namespace

TextPieces::Piece TextPieces::next() {
  piece_.erase(0, piece_.size() - returned_);
  returned_ = 0;
  return filled(limit_);
}

TextPieces::Piece TextPieces::lengthened() {
  return filled(2 * std::max(piece_.size(), limit_));
}

TextPieces::Piece TextPieces::filled(std::size_t limit) {
  while (position_ < text_.size()) {
    const Symbol symbol = symbolAt(text_.substr(position_));
    if (symbol.isShown && piece_.size() + symbol.length > limit) {
      return {piece_, PieceEnd::none};
    }
    if (symbol.isShown) {
      piece_.append(text_, position_, symbol.length);
    }
    position_ += symbol.length;
    if (symbol.end) {
      return {piece_, *symbol.end};
    }
  }
  return {piece_, PieceEnd::paragraph};
}

}  // namespace tolvane
