#pragma once

#include <vector>

namespace tolvane {

/// In points from the upper left corner of the page as it is seen, y downwards.
struct TextBox {
  double x1 = 0;
  double y1 = 0;
  double x2 = 0;
  double y2 = 0;
};

/// What a character is the first one of.
enum class Opens { nothing, line, block };

/// Which way the characters of a word follow each other.
enum class Course { across, down };

/// One character of a page; its box is as wide as the character and as high as its font.
struct PageCharacter {
  char32_t code = 0;
  TextBox box{};
  Opens opens = Opens::nothing;
  Course course = Course::across;

  [[nodiscard]] bool isBlank() const { return code == ' ' || code == 0xA0; }
};

/// The characters of one page, its blocks in reading order; those of a line stand as they are seen,
/// from left to right, whatever their language.
using PageCharacters = std::vector<PageCharacter>;

}  // namespace tolvane
