#pragma once

#include <exception>

namespace tolvane {

/// Thrown inside the property-list readers; never leaves PropertyList::parse.
class DamagedPropertyList final : public std::exception {
 public:
  [[nodiscard]] const char* what() const noexcept override { return "damaged property list"; }
};

/// Keeps one list from using up the stack or the heap.
class PropertyListLimits {
 public:
  static constexpr int maxDepth = 512;
  static constexpr int maxValues = 1'000'000;

  /// One value being read, with everything in it.
  class Value {
   public:
    /// @throws DamagedPropertyList when the list nests too deep or holds too many values.
    explicit Value(PropertyListLimits& limits) : limits_(limits) {
      if (limits.depth_ == maxDepth || limits.values_ == maxValues) {
        throw DamagedPropertyList();
      }
      ++limits.depth_;
      ++limits.values_;
    }
    ~Value() { --limits_.depth_; }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;

   private:
    PropertyListLimits& limits_;
  };

 private:
  int depth_ = 0;
  int values_ = 0;
};

}  // namespace tolvane
