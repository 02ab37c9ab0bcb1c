#pragma once

#include <array>
#include <string_view>

namespace tolvane::confine {

/// A number as text.
class Decimal {
 public:
  explicit Decimal(unsigned number) {
    do {
      digits_[--start_] = static_cast<char>('0' + number % base);
      number /= base;
    } while (number != 0);
  }

  [[nodiscard]] std::string_view text() const {
    return {digits_.data() + start_, digits_.size() - start_};
  }

  /// @return 0 when `text` is not a number.
  [[nodiscard]] static int read(std::string_view text) {
    int number = 0;
    for (const char digit : text) {
      if (digit < '0' || digit > '9' || number > most) {
        return 0;
      }
      number = number * static_cast<int>(base) + (digit - '0');
    }
    return number;
  }

 private:
  static constexpr unsigned base = 10;
  static constexpr int most = 99'999'999;  // nine digits never overflow

  std::array<char, 10> digits_ = {};  // enough for 32 bits
  std::size_t start_ = digits_.size();
};

}  // namespace tolvane::confine
