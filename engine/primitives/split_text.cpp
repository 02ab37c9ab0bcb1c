#include "engine/primitives/split_text.h"

namespace tolvane {

std::vector<std::string_view> split(std::string_view text, std::string_view separator) {
  std::vector<std::string_view> pieces;
  forEachPiece(text, separator, [&](std::string_view piece) { pieces.push_back(piece); });
  return pieces;
}

std::string_view unpadded(std::string_view text) {
  constexpr std::string_view padding = " \t";
  const std::size_t first = text.find_first_not_of(padding);
  return first == std::string_view::npos
             ? std::string_view()
             : text.substr(first, text.find_last_not_of(padding) - first + 1);
}

}  // namespace tolvane
