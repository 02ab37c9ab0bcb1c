#pragma once

#include <cstddef>
#include <vector>

#include "platform/documents/poppler/page_characters.h"

namespace tolvane {

/// How a segment follows the one before it in poppler's order.
enum class Joint {
  line,  ///< on a new line of the same block
  gap,   ///< on the same line, but apart as the cells of a table are
  block  ///< in a new block
};

/// Characters of one line without a wide gap.
struct TextSegment {
  std::size_t begin = 0;
  std::size_t end = 0;  ///< past the last character
  Joint joint = Joint::line;
  TextBox box{};
  Course course = Course::across;

  [[nodiscard]] double width() const { return box.x2 - box.x1; }
  [[nodiscard]] double height() const { return box.y2 - box.y1; }
  [[nodiscard]] double middle() const { return (box.y1 + box.y2) / 2; }
};

/// How two boxes lie to each other.
namespace Boxes {
/// Whether they stand on one line of horizontal text.
[[nodiscard]] bool shareRow(const TextBox& one, const TextBox& other);
/// Negative where they overlap.
[[nodiscard]] double gapBeside(const TextBox& one, const TextBox& other);
[[nodiscard]] double gapBetween(const TextBox& upper, const TextBox& lower);
/// Whether two characters of one line belong to two words, though nothing is written between them.
[[nodiscard]] bool areWordsApart(const PageCharacter& one, const PageCharacter& other);
}  // namespace Boxes

[[nodiscard]] std::vector<TextSegment> segmentsOf(const PageCharacters& characters);

}  // namespace tolvane
