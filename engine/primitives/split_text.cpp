#include "engine/primitives/split_text.h"

namespace tolvane {

std::vector<std::string_view> split(std::string_view text, std::string_view separator) {
  std::vector<std::string_view> pieces;
  forEachPiece(text, separator, [&](std::string_view piece) { pieces.push_back(piece); });
  return pieces;
}

}  // namespace tolvane
