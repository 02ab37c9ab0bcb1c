#include "platform/typesetting/text_pieces.h"

#include <tuple>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

using namespace std::string_view_literals;

/// The pieces, each followed by a sign for its end: "+" none, "/" line, "|" paragraph, "#" page.
std::string divided(std::string_view text, std::size_t limit) {
  std::string result;
  TextPieces pieces(text, limit);
  while (!pieces.atEnd()) {
    const TextPieces::Piece piece = pieces.next();
    result.append(piece.text) += "+/|#"[static_cast<std::size_t>(piece.end)];
  }
  return result;
}

const std::tuple<const char*, std::string_view, const char*> textPiecesCases[] = {
    {"nothing", "", ""},
    {"no end of line", "a", "a|"},
    {"end of line at the end", "a\nb\n", "a|b|"},
    {"empty lines", "\n\na", "||a|"},
    {"CR LF and CR", "a\r\nb\rc\n\rd", "a|b|c||d|"},
    {"form feed", "a\fb\f", "a#b#"},
    {"vertical tab", "a\vb", "a/b|"},
    {"separators of Unicode", "a\u2028b\u2029c\u0085d", "a/b|c|d|"},
    {"tabs stay", "a\tb", "a\tb|"},
    {"controls go", "a\0b\x1B\x7F\u0080\u009F\u00A0"sv, "ab\u00A0|"},
    {"exactly the limit", "12345678\n", "12345678|"},
    {"over the limit", "123456789", "12345678+9|"},
    {"uncut characters", "1234567\u20AC", "1234567+\u20AC|"},
    {"controls do not cut", "12345678\0"sv, "12345678|"},
};

TEST(TextPiecesTest, AreWhatAReaderSees) {
  for (const auto& [label, text, expected] : textPiecesCases) {
    EXPECT_EQ(divided(text, 8), expected) << label;
  }
}

TEST(TextPiecesTest, BeginWithWhatWasPutBack) {
  TextPieces pieces("123456789", 4);
  EXPECT_EQ(pieces.next().text, "1234");
  pieces.putBack(3);
  EXPECT_EQ(pieces.next().text, "2345");
  EXPECT_EQ(pieces.next().text, "6789");
  EXPECT_TRUE(pieces.atEnd());
}

TEST(TextPiecesTest, AreLengthenedToTwiceTheirSize) {
  TextPieces pieces("123456789abcdefghijk\nl", 4);
  EXPECT_EQ(pieces.next().text, "1234");
  EXPECT_EQ(pieces.lengthened().text, "12345678");
  pieces.putBack(6);
  EXPECT_EQ(pieces.next().text, "345678");
  const TextPieces::Piece longer = pieces.lengthened();
  EXPECT_EQ(longer.text, "3456789abcde");
  EXPECT_EQ(longer.end, PieceEnd::none);
  const TextPieces::Piece whole = pieces.lengthened();
  EXPECT_EQ(whole.text, "3456789abcdefghijk");
  EXPECT_EQ(whole.end, PieceEnd::paragraph);
  EXPECT_EQ(pieces.next().text, "l");
}

}  // namespace
}  // namespace tolvane
