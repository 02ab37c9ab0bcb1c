#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace tolvane {

/// What crosses the channel and what a job's options are made of: null, a flag, a number, text, raw
/// bytes, a list, or a map with text keys. Text is UTF-8, except that paths are passed as they are.
class Value {
 public:
  using Bytes = std::vector<std::uint8_t>;
  using List = std::vector<Value>;
  using Map = std::map<std::string, Value, std::less<>>;
  using Variant =
      std::variant<std::monostate, bool, std::int64_t, double, std::string, Bytes, List, Map>;

  /// Lists and maps within each other, in what is read and written; guards the stack.
  static constexpr int maxDepth = 512;

  Value() = default;
  // The conversions are implicit so that maps and lists of values can be written down as literals.
  // NOLINTBEGIN(google-explicit-constructor)
  Value(std::nullptr_t) {}
  Value(const char* text) : variant_(std::string(text)) {}
  Value(std::string_view text) : variant_(std::string(text)) {}
  Value(std::string text) : variant_(std::move(text)) {}
  Value(Bytes bytes) : variant_(std::move(bytes)) {}
  Value(List list) : variant_(std::move(list)) {}
  Value(Map map) : variant_(std::move(map)) {}
  Value(double number) : variant_(number) {}
  template <typename T, std::enable_if_t<std::is_integral_v<T>, int> = 0>
  Value(T number) {
    if constexpr (std::is_same_v<T, bool>) {
      variant_ = number;
    } else {
      variant_ = static_cast<std::int64_t>(number);
    }
  }
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] const Variant& variant() const { return variant_; }
  [[nodiscard]] bool isNull() const { return std::holds_alternative<std::monostate>(variant_); }

  /// Typed reading. Each answers "absent" (nullptr or nullopt) for a value of another type.
  [[nodiscard]] const std::string* text() const { return std::get_if<std::string>(&variant_); }
  [[nodiscard]] const Bytes* bytes() const { return std::get_if<Bytes>(&variant_); }
  [[nodiscard]] const List* list() const { return std::get_if<List>(&variant_); }
  [[nodiscard]] const Map* map() const { return std::get_if<Map>(&variant_); }
  [[nodiscard]] std::optional<bool> flag() const;
  /// A number however it was sent: an integral double reads as an integer, true and false as 1 and
  /// 0.
  [[nodiscard]] std::optional<std::int64_t> integer() const;
  [[nodiscard]] std::optional<double> number() const;
  /// A list whose members are all text; nullopt if any is not.
  [[nodiscard]] std::optional<std::vector<std::string>> texts() const;

  /// Member of a map; null when this is no map or has no such key.
  [[nodiscard]] const Value& operator[](std::string_view key) const;

  friend bool operator==(const Value&, const Value&) = default;

 private:
  Variant variant_;
};

/// The value under `key`, or null. Never inserts.
[[nodiscard]] const Value& valueAt(const Value::Map& map, std::string_view key);

}  // namespace tolvane
