#include "platform/text/xml_scanner.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <system_error>
#include <utility>

#include "platform/text/property_list_limits.h"
#include "platform/text/utf16_joiner.h"

namespace tolvane {

namespace {

struct Entity {
  std::string_view name;
  char character;
};

constexpr Entity predefinedEntities[] = {
    {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};

/// @param number what stands between "&#" and ";": decimal, or hexadecimal after an x.
char32_t numberedCharacter(std::string_view number) {
  const bool isHexadecimal = number.starts_with('x');
  number.remove_prefix(isHexadecimal ? 1 : 0);
  std::uint32_t codePoint = 0;
  const char* const end = number.data() + number.size();
  const auto [stop, error] =
      std::from_chars(number.data(), end, codePoint, isHexadecimal ? 16 : 10);
  const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  if (error != std::errc() || stop != end || codePoint == 0 || codePoint > 0x10FFFF ||
      isSurrogate) {
    throw DamagedPropertyList();
  }
  return codePoint;
}

}  // namespace

std::optional<std::string_view> XmlScanner::nextChild(std::string_view parent) {
  if (std::exchange(isInEmptyElement_, false)) {
    return std::nullopt;
  }
  skipBetweenElements();
  if (!skip("<")) {
    throw DamagedPropertyList();
  }
  const bool isEnd = skip("/");
  const std::string_view name = takeName();
  skipAttributes();
  isInEmptyElement_ = skip("/");
  const bool isRightEnd = name == parent && !isInEmptyElement_;
  if (!skip(">") || (isEnd && !isRightEnd)) {
    throw DamagedPropertyList();
  }
  return isEnd ? std::nullopt : std::optional(name);
}

std::string XmlScanner::text(std::string_view element) {
  std::string text = isInEmptyElement_ ? std::string() : characters();
  if (nextChild(element)) {
    throw DamagedPropertyList();
  }
  return text;
}

std::string XmlScanner::characters() {
  std::string text;
  while (true) {
    const std::size_t length = std::min(rest_.find_first_of("<&"), rest_.size());
    text += rest_.substr(0, length);
    rest_.remove_prefix(length);
    if (skip("&")) {
      takeEntity(text);
    } else if (skip("<![CDATA[")) {
      text += takeUntil("]]>");
    } else if (skip("<!--")) {
      static_cast<void>(takeUntil("-->"));
    } else {
      return text;
    }
  }
}

bool XmlScanner::skip(std::string_view prefix) {
  if (!rest_.starts_with(prefix)) {
    return false;
  }
  rest_.remove_prefix(prefix.size());
  return true;
}

/// What stands before `end`, which is passed over.
std::string_view XmlScanner::takeUntil(std::string_view end) {
  const std::size_t length = rest_.find(end);
  if (length == std::string_view::npos) {
    throw DamagedPropertyList();
  }
  const std::string_view taken = rest_.substr(0, length);
  rest_.remove_prefix(length + end.size());
  return taken;
}

std::string_view XmlScanner::takeName() {
  const std::string_view name = rest_.substr(0, rest_.find_first_of(" \t\r\n/>"));
  if (name.empty()) {
    throw DamagedPropertyList();
  }
  rest_.remove_prefix(name.size());
  return name;
}

void XmlScanner::skipBetweenElements() {
  while (true) {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size()));
    if (skip("<!--")) {
      static_cast<void>(takeUntil("-->"));
    } else if (skip("<?")) {
      static_cast<void>(takeUntil("?>"));
    } else if (skip("<!DOCTYPE")) {
      skipDocumentType();
    } else {
      return;
    }
  }
}

/// To the closing bracket. Declarations may stand inside, in square brackets.
void XmlScanner::skipDocumentType() {
  bool isInside = false;
  while (true) {
    rest_.remove_prefix(std::min(rest_.find_first_of("[]<>\"'"), rest_.size()));
    if (skip("<!--")) {
      static_cast<void>(takeUntil("-->"));
    } else if (skip("<?")) {
      static_cast<void>(takeUntil("?>"));
    } else if (skip("\"")) {
      static_cast<void>(takeUntil("\""));
    } else if (skip("'")) {
      static_cast<void>(takeUntil("'"));
    } else if (skip("[")) {
      isInside = true;
    } else if (skip("]")) {
      isInside = false;
    } else if (rest_.empty()) {
      throw DamagedPropertyList();
    } else if (skip(">") && !isInside) {
      return;
    } else {
      static_cast<void>(skip("<"));
    }
  }
}

/// To the end of a tag, before its "/" or ">".
void XmlScanner::skipAttributes() {
  while (true) {
    rest_.remove_prefix(std::min(rest_.find_first_of("\"'/<>"), rest_.size()));
    if (skip("\"")) {
      static_cast<void>(takeUntil("\""));
    } else if (skip("'")) {
      static_cast<void>(takeUntil("'"));
    } else {
      return;
    }
  }
}

void XmlScanner::takeEntity(std::string& text) {
  const std::string_view name = takeUntil(";");
  if (name.starts_with('#')) {
    appendUtf8(numberedCharacter(name.substr(1)), text);
    return;
  }
  const auto* const found = std::find_if(std::begin(predefinedEntities),
                                         std::end(predefinedEntities),
                                         [&](const Entity& entity) { return entity.name == name; });
  if (found == std::end(predefinedEntities)) {
    throw DamagedPropertyList();
  }
  text += found->character;
}

}  // namespace tolvane
