#include "formats/xml_text.h"

#include <cstddef>

#include "formats/byte_set.h"

namespace tolvane::UniversalFormats {

namespace {

constexpr ByteSet special("&<>\"");

std::string_view escaped(char character) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    default:
      return "&quot;";
  }
}

}  // namespace

std::string xml(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t next = special.findIn(text, position);
    result += text.substr(position, next - position);
    if (next < text.size()) {
      result += escaped(text[next]);
    }
    position = next + 1;
  }
  return result;
}

}  // namespace tolvane::UniversalFormats
