#include "platform/desktop/desktop_entry.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace tolvane {

namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const std::size_t first = text.find_first_not_of(blanks);
  return first == std::string_view::npos
             ? std::string_view()
             : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view takeLine(std::string_view& text) {
  const std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(text.size(), line.size() + 1));
  return line;
}

std::optional<char> escaped(char letter) {
  constexpr std::string_view letters = "sntr\\";
  constexpr std::string_view meanings = " \n\t\r\\";
  const std::size_t index = letters.find(letter);
  return index != std::string_view::npos ? std::optional(meanings[index]) : std::nullopt;
}

std::string withoutEscapes(std::string_view value) {
  std::string text;
  for (std::size_t at = 0; at < value.size(); ++at) {
    const bool startsEscape = value[at] == '\\' && at + 1 < value.size();
    const auto meaning = startsEscape ? escaped(value[at + 1]) : std::nullopt;
    text += meaning.value_or(value[at]);
    at += meaning ? 1U : 0U;
  }
  return text;
}

/// Field codes stand for files that nobody hands over here; "%%" is a percent sign.
std::string withoutFieldCodes(std::string_view argument) {
  std::string text;
  for (std::size_t at = 0; at < argument.size(); ++at) {
    if (argument[at] != '%') {
      text += argument[at];
    } else if (++at < argument.size() && argument[at] == '%') {
      text += '%';
    }
  }
  return text;
}

std::string quotedArgumentIn(std::string_view value) {
  std::string argument;
  for (std::size_t at = 1; at < value.size() && value[at] != '"'; ++at) {
    at += value[at] == '\\' && at + 1 < value.size() ? 1U : 0U;
    argument += value[at];
  }
  return argument;
}

}  // namespace

std::map<std::string, std::string> DesktopEntry::keysIn(std::string_view text) {
  std::map<std::string, std::string> keys;
  bool isInGroup = false;
  while (!text.empty()) {
    const std::string_view line = trimmed(takeLine(text));
    const std::size_t equals = line.find('=');
    if (line.starts_with('[')) {
      isInGroup = line == "[Desktop Entry]";
    } else if (isInGroup && !line.starts_with('#') && equals != std::string_view::npos) {
      keys.insert_or_assign(std::string(trimmed(line.substr(0, equals))),
                            withoutEscapes(trimmed(line.substr(equals + 1))));
    }
  }
  return keys;
}

std::string DesktopEntry::execValue(std::string_view program) {
  std::string value = "\"";
  for (const char sign : program) {
    if (sign == '\\') {
      value += R"(\\\\)";  // once as a quoted sign, and each of the two as a sign of the value
    } else if (std::string_view("\"`$").find(sign) != std::string_view::npos) {
      value += std::string(R"(\\)") + sign;
    } else if (sign == '\n') {
      value += R"(\n)";
    } else if (sign == '%') {
      value += "%%";
    } else {
      value += sign;
    }
  }
  return value + '"';
}

std::string DesktopEntry::programIn(std::string_view value) {
  const std::string argument = value.starts_with('"')
                                   ? quotedArgumentIn(value)
                                   : std::string(value.substr(0, value.find_first_of(" \t")));
  return withoutFieldCodes(argument);
}

}  // namespace tolvane
