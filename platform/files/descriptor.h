#pragma once

#include <utility>

namespace tolvane {

/// Owns an open file descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor();

  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  /// -1 when there is none.
  [[nodiscard]] int number() const { return number_; }
  /// @return the number; the caller owns it.
  [[nodiscard]] int release() { return std::exchange(number_, -1); }

 private:
  int number_ = -1;
};

}  // namespace tolvane
