#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/files/bytes.h"

namespace tolvane {

/// A value of a property list. Numbers, dates, flags and references read as `other`: nothing here
/// needs them.
struct PropertyList {
  struct Other {};
  using Array = std::vector<PropertyList>;
  using Dictionary = std::map<std::string, PropertyList, std::less<>>;

  std::variant<Other, std::string, Bytes, Array, Dictionary> value;

  /// Reads the XML, binary and old-style text encodings, told apart by content.
  /// Nesting deeper than 512 levels, more than a million values, cycles and references outside the
  /// file are refused.
  /// @return nullopt when the bytes are none of the three, or damaged.
  [[nodiscard]] static std::optional<PropertyList> parse(BytesView bytes);

  [[nodiscard]] const std::string* text() const { return std::get_if<std::string>(&value); }
  [[nodiscard]] const Bytes* bytes() const { return std::get_if<Bytes>(&value); }
  [[nodiscard]] const Dictionary* dictionary() const { return std::get_if<Dictionary>(&value); }
};

}  // namespace tolvane
