#include "platform/text/text_clusters.h"

#include <cstdint>
#include <unicode/uchar.h>

namespace tolvane::TextClusters {

namespace {

bool isAscii(char byte) {
  return static_cast<std::uint8_t>(byte) < 0x80;
}

bool isControl(char ascii) {
  return static_cast<std::uint8_t>(ascii) < 0x20 || ascii == 0x7F;
}

bool isContinuation(char byte) {
  return (static_cast<std::uint8_t>(byte) & 0xC0) == 0x80;
}

/// @param text starts with a well-formed character past ASCII.
UChar32 firstCharacter(std::string_view text) {
  const auto lead = static_cast<std::uint8_t>(text[0]);
  const unsigned length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  UChar32 character = lead & (0x7F >> length);
  for (const char byte : text.substr(1, length - 1)) {
    character = character << 6 | (static_cast<std::uint8_t>(byte) & 0x3F);
  }
  return character;
}

std::string_view fromLastCharacter(std::string_view text) {
  std::size_t start = text.size() - 1;
  while (start > 0 && isContinuation(text[start])) {
    --start;
  }
  return text.substr(start);
}

int breakProperty(UChar32 character) {
  return u_getIntPropertyValue(character, UCHAR_GRAPHEME_CLUSTER_BREAK);
}

/// Rules GB9 and GB9a.
bool startsWithJoiningMark(std::string_view rest) {
  const int property = breakProperty(firstCharacter(rest));
  return property == U_GCB_EXTEND || property == U_GCB_ZWJ || property == U_GCB_SPACING_MARK;
}

/// Rule GB9b.
bool endsWithPrependedSign(std::string_view text) {
  return breakProperty(firstCharacter(fromLastCharacter(text))) == U_GCB_PREPEND;
}

}  // namespace

bool isAlone(std::string_view text, std::size_t position) {
  if (isControl(text[position])) {
    return true;
  }
  const bool isMarked = position + 1 < text.size() && !isAscii(text[position + 1]) &&
                        startsWithJoiningMark(text.substr(position + 1));
  const bool isPrepended = position > 0 && !isAscii(text[position - 1]) &&
                           endsWithPrependedSign(text.substr(0, position));
  return !isMarked && !isPrepended;
}

}  // namespace tolvane::TextClusters
