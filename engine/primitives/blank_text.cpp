#include "engine/primitives/blank_text.h"

#include <algorithm>
#include <array>

namespace tolvane {

namespace {

/// The encoded blanks beyond ASCII; U+2000 to U+200A are handled as a range.
constexpr std::array<std::string_view, 8> wideBlanks = {
    "\xC2\x85",      // next line
    "\xC2\xA0",      // no-break space
    "\xE1\x9A\x80",  // ogham space mark
    "\xE2\x80\xA8",  // line separator
    "\xE2\x80\xA9",  // paragraph separator
    "\xE2\x80\xAF",  // narrow no-break space
    "\xE2\x81\x9F",  // medium mathematical space
    "\xE3\x80\x80",  // ideographic space
};

constexpr std::size_t longestBlank = 3;

/// Length in bytes of the blank at the start of `text`, not empty; 0 when there is none.
std::size_t blankLength(std::string_view text) {
  const char first = text.front();
  if (first == ' ' || (first >= '\t' && first <= '\r')) {
    return 1;
  }
  constexpr std::string_view generalPunctuation = "\xE2\x80";  // U+2000 to U+203F
  if (text.starts_with(generalPunctuation) && text.size() > 2 &&
      static_cast<unsigned char>(text[2]) <= 0x8A) {
    return 3;
  }
  const auto* found = std::find_if(
      wideBlanks.begin(), wideBlanks.end(), [text](auto blank) { return text.starts_with(blank); });
  return found != wideBlanks.end() ? found->size() : 0;
}

/// Length in bytes of the blank at the end of `text`, not empty; 0 when there is none.
std::size_t lastBlankLength(std::string_view text) {
  for (std::size_t length = 1; length <= std::min(longestBlank, text.size()); ++length) {
    if (blankLength(text.substr(text.size() - length)) == length) {
      return length;
    }
  }
  return 0;
}

std::string_view withoutLeadingBlanks(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = blankLength(text);
    if (length == 0) {
      break;
    }
    text.remove_prefix(length);
  }
  return text;
}

}  // namespace

bool isBlank(std::string_view text) {
  return withoutLeadingBlanks(text).empty();
}

std::string_view trimmed(std::string_view text) {
  text = withoutLeadingBlanks(text);
  while (!text.empty()) {
    const std::size_t length = lastBlankLength(text);
    if (length == 0) {
      break;
    }
    text.remove_suffix(length);
  }
  return text;
}

}  // namespace tolvane
