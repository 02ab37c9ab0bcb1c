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
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor();

  /// -1 when there is none.
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_ = -1;
};

}  // namespace tolvane
