#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "engine/primitives/value.h"

/// The JSON form of a value. Raw bytes are written {"$bytes": "<base64>"}, doubles always with a
/// decimal point or an exponent, so that 5.0 stays a double; what JSON cannot express (infinities,
/// not a number) is written null.
namespace tolvane::ValueJson {

/// Text that is no JSON, or nested more than Value::maxDepth deep.
class ParseError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class Layout {
  oneLine,
  indented  ///< a member a line
};

/// Keys are sorted. Bytes of a path that are not UTF-8 are shown as U+FFFD.
[[nodiscard]] std::string write(const Value& value, Layout layout = Layout::oneLine);

/// Whole numbers past 64 bits read as doubles; a map whose only member is "$bytes" with base64 text
/// reads as bytes.
/// @throws ParseError
[[nodiscard]] Value parse(std::string_view text);

}  // namespace tolvane::ValueJson
