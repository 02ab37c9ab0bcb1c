#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tolvane {

/// Looks for any of some bytes, at about the same speed however many they are.
class ByteSet {
 public:
  explicit constexpr ByteSet(std::string_view bytes) {
    for (const char byte : bytes) {
      holds_[static_cast<unsigned char>(byte)] = true;
    }
  }

  [[nodiscard]] constexpr bool holds(char byte) const {
    return holds_[static_cast<unsigned char>(byte)];
  }

  /// @return the position of the first one at or after `position`; the text's size when there is
  /// none.
  [[nodiscard]] constexpr std::size_t findIn(std::string_view text, std::size_t position) const {
    while (position < text.size() && !holds(text[position])) {
      ++position;
    }
    return position;
  }

 private:
  std::array<bool, 256> holds_ = {};
};

}  // namespace tolvane
