#include <cstdint>
#include <unicode/unistr.h>

#include "platform/text/rich_text.h"

namespace tolvane::RichText {

namespace {

/// One font, for every script; \uc1 says that each Unicode escape has one stand-in.
constexpr std::string_view opening =
    "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0\n"
    "{\\fonttbl{\\f0\\fswiss\\fcharset0 Helvetica;}}\n"
    "\\f0\\fs24 ";

void appendEscape(char16_t unit, std::string& rtf) {
  rtf += "\\u";
  rtf += std::to_string(static_cast<std::int16_t>(unit));
  rtf += '?';
}

void appendUnit(char16_t unit, std::string& rtf) {
  switch (unit) {
    case '\n':
      rtf += "\\par\n";
      break;
    case '\t':
      rtf += "\\tab ";
      break;
    case '\\':
    case '{':
    case '}':
      rtf += '\\';
      rtf += static_cast<char>(unit);
      break;
    default:
      if (unit >= 0x20 && unit < 0x7F) {
        rtf += static_cast<char>(unit);
      } else {
        appendEscape(unit, rtf);
      }
  }
}

}  // namespace

std::string document(std::string_view text) {
  std::string rtf(opening);
  rtf.reserve(opening.size() + text.size() + text.size() / 8 + 1);
  const auto units = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  for (std::int32_t index = 0; index < units.length(); ++index) {
    if (units[index] != '\r') {
      appendUnit(units[index], rtf);
    } else if (index + 1 == units.length() || units[index + 1] != '\n') {
      appendUnit('\n', rtf);
    }
  }
  rtf += '}';
  return rtf;
}

}  // namespace tolvane::RichText
