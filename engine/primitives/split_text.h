#pragma once

#include <string_view>
#include <vector>

namespace tolvane {

/// Hands each piece between the separators to `action`, empty ones included; at least one.
/// @param separator not empty.
template <typename Action>
void forEachPiece(std::string_view text, std::string_view separator, const Action& action) {
  std::size_t end = text.find(separator);
  while (end != std::string_view::npos) {
    action(text.substr(0, end));
    text.remove_prefix(end + separator.size());
    end = text.find(separator);
  }
  action(text);
}

/// @return the same pieces; they refer to `text`.
[[nodiscard]] std::vector<std::string_view> split(std::string_view text,
                                                  std::string_view separator);

/// @return the part between the blanks and tabs at its ends.
[[nodiscard]] std::string_view unpadded(std::string_view text);

}  // namespace tolvane
