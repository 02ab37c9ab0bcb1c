#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

#include "engine/primitives/value.h"

/// The JSON form of a value. Raw bytes are written {"$bytes": "<base64>"}, doubles always with a
/// decimal point or an exponent, so that 5.0 stays a double; what JSON cannot express (infinities,
/// not a number) is written null.
namespace tolvane::ValueJson {

/// Bounds of what is read, by which a small text cannot take much memory: some 200 MB at most.
inline constexpr std::size_t maxText = std::size_t{16} << 20;  // bytes
inline constexpr std::size_t maxMembers = 1'000'000;           // of all lists and maps together

/// Text that is no JSON.
class ParseError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Text that is longer than maxText, has more than maxMembers, or is nested more than
/// Value::maxDepth deep. What it says is a sentence.
class BoundsError : public ParseError {
 public:
  using ParseError::ParseError;
};

enum class Layout {
  oneLine,
  indented  ///< a member a line
};

/// Keys are sorted. Bytes of a path that are not UTF-8 are shown as U+FFFD.
[[nodiscard]] std::string write(const Value& value, Layout layout = Layout::oneLine);

/// Whole numbers past 64 bits read as doubles; a map whose only member is "$bytes" with base64 text
/// reads as bytes.
/// @throws ParseError, BoundsError
[[nodiscard]] Value parse(std::string_view text);

}  // namespace tolvane::ValueJson
