#pragma once

#include <string>

namespace tolvane {

/// One character on a page and its box: as wide as the character, as high as its font. In points
/// from the upper left corner of the page as it is seen, y downwards.
struct PdfGlyph {
  std::string text;  ///< one code point in UTF-8
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  [[nodiscard]] double minX() const { return x; }
  [[nodiscard]] double maxX() const { return x + width; }
  [[nodiscard]] double midY() const { return y + height / 2; }
};

}  // namespace tolvane
