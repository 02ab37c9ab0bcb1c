#include "platform/text/text_property_list.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "platform/text/property_list_limits.h"
#include "platform/text/utf16_joiner.h"

namespace tolvane {

namespace {

/// Characters of an octal escape from \200 on, which names a byte of the NeXTSTEP encoding
/// (unicode.org/Public/MAPPINGS/VENDORS/NEXT/NEXTSTEP.TXT).
constexpr std::array<char16_t, 128> upperOctalCharacters = {
    0x00A0, 0x00C0, 0x00C1, 0x00C2, 0x00C3, 0x00C4, 0x00C5, 0x00C7, 0x00C8, 0x00C9, 0x00CA, 0x00CB,
    0x00CC, 0x00CD, 0x00CE, 0x00CF, 0x00D0, 0x00D1, 0x00D2, 0x00D3, 0x00D4, 0x00D5, 0x00D6, 0x00D9,
    0x00DA, 0x00DB, 0x00DC, 0x00DD, 0x00DE, 0x00B5, 0x00D7, 0x00F7, 0x00A9, 0x00A1, 0x00A2, 0x00A3,
    0x2044, 0x00A5, 0x0192, 0x00A7, 0x00A4, 0x2019, 0x201C, 0x00AB, 0x2039, 0x203A, 0xFB01, 0xFB02,
    0x00AE, 0x2013, 0x2020, 0x2021, 0x00B7, 0x00A6, 0x00B6, 0x2022, 0x201A, 0x201E, 0x201D, 0x00BB,
    0x2026, 0x2030, 0x00AC, 0x00BF, 0x00B9, 0x02CB, 0x00B4, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9,
    0x00A8, 0x00B2, 0x02DA, 0x00B8, 0x00B3, 0x02DD, 0x02DB, 0x02C7, 0x2014, 0x00B1, 0x00BC, 0x00BD,
    0x00BE, 0x00E0, 0x00E1, 0x00E2, 0x00E3, 0x00E4, 0x00E5, 0x00E7, 0x00E8, 0x00E9, 0x00EA, 0x00EB,
    0x00EC, 0x00C6, 0x00ED, 0x00AA, 0x00EE, 0x00EF, 0x00F0, 0x00F1, 0x0141, 0x00D8, 0x0152, 0x00BA,
    0x00F2, 0x00F3, 0x00F4, 0x00F5, 0x00F6, 0x00E6, 0x00F9, 0x00FA, 0x00FB, 0x0131, 0x00FC, 0x00FD,
    0x0142, 0x00F8, 0x0153, 0x00DF, 0x00FE, 0x00FF, 0xFFFD, 0xFFFD};

struct LetterEscape {
  char letter;
  char character;
};

/// What else follows a backslash stands for itself.
constexpr LetterEscape letterEscapes[] = {
    {'a', '\a'}, {'b', '\b'}, {'f', '\f'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'v', '\v'}};

/// @return nullopt when `letter` is no digit in that base (8 or 16).
std::optional<unsigned> digitValue(char letter, unsigned base) {
  constexpr std::string_view digits = "0123456789abcdef";
  const char lowered = letter >= 'A' && letter <= 'F' ? static_cast<char>(letter | 0x20) : letter;
  const std::size_t value = digits.find(lowered);
  return value < base ? std::optional(static_cast<unsigned>(value)) : std::nullopt;
}

bool isUnquoted(char letter) {
  const bool isLetter = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
  const bool isDigit = letter >= '0' && letter <= '9';
  return isLetter || isDigit || std::string_view("_$/:.-").find(letter) != std::string_view::npos;
}

class TextReader {
 public:
  explicit TextReader(std::string_view text) : rest_(text) {}

  [[nodiscard]] PropertyList read();

 private:
  PropertyList value();
  PropertyList::Dictionary dictionary();
  PropertyList::Dictionary bareDictionary();
  void takeMember(PropertyList::Dictionary& dictionary);
  PropertyList::Array array();
  Bytes data();
  std::string text();
  std::string quotedText(char quote);
  void takeEscape(std::string& text, Utf16Joiner& joiner);
  unsigned takeNumber(unsigned base, int maxDigits);

  void skipBlanks();
  void skipThrough(std::string_view end);
  [[nodiscard]] bool skip(std::string_view prefix);
  void expect(std::string_view punctuation);

  std::string_view rest_;
  PropertyListLimits limits_;
};

PropertyList TextReader::read() {
  const std::string_view whole = rest_;
  PropertyList list = value();
  skipBlanks();
  if (list.text() != nullptr && rest_.starts_with('=')) {
    rest_ = whole;
    return {bareDictionary()};
  }
  if (!rest_.empty()) {
    throw DamagedPropertyList();
  }
  return list;
}

PropertyList TextReader::value() {
  const PropertyListLimits::Value counted(limits_);
  skipBlanks();
  if (skip("{")) {
    return {dictionary()};
  }
  if (skip("(")) {
    return {array()};
  }
  if (skip("<")) {
    return {data()};
  }
  return {text()};
}

/// `rest_` stands after the opening bracket, here and in array() and data().
PropertyList::Dictionary TextReader::dictionary() {
  PropertyList::Dictionary dictionary;
  while (true) {
    skipBlanks();
    if (skip("}")) {
      return dictionary;
    }
    takeMember(dictionary);
  }
}

/// Takes the rest of the file.
PropertyList::Dictionary TextReader::bareDictionary() {
  const PropertyListLimits::Value counted(limits_);
  PropertyList::Dictionary dictionary;
  skipBlanks();
  while (!rest_.empty()) {
    takeMember(dictionary);
    skipBlanks();
  }
  return dictionary;
}

void TextReader::takeMember(PropertyList::Dictionary& dictionary) {
  std::string key = text();
  expect("=");
  dictionary.insert_or_assign(std::move(key), value());
  expect(";");
}

PropertyList::Array TextReader::array() {
  PropertyList::Array array;
  while (true) {
    skipBlanks();
    if (skip(")")) {
      return array;
    }
    array.push_back(value());
    skipBlanks();
    if (!skip(",") && !rest_.starts_with(')')) {
      throw DamagedPropertyList();
    }
  }
}

Bytes TextReader::data() {
  Bytes bytes;
  while (true) {
    skipBlanks();
    if (skip(">")) {
      return bytes;
    }
    const std::optional<unsigned> high = rest_.empty() ? std::nullopt : digitValue(rest_[0], 16);
    const std::optional<unsigned> low = rest_.size() < 2 ? std::nullopt : digitValue(rest_[1], 16);
    if (!high || !low) {
      throw DamagedPropertyList();
    }
    bytes.push_back(static_cast<std::uint8_t>(*high << 4 | *low));
    rest_.remove_prefix(2);
  }
}

std::string TextReader::text() {
  for (const char quote : {'"', '\''}) {
    if (rest_.starts_with(quote)) {
      rest_.remove_prefix(1);
      return quotedText(quote);
    }
  }
  const auto* const end = std::find_if_not(rest_.begin(), rest_.end(), isUnquoted);
  std::string text(rest_.begin(), end);
  if (text.empty()) {
    throw DamagedPropertyList();
  }
  rest_.remove_prefix(text.size());
  return text;
}

std::string TextReader::quotedText(char quote) {
  const char stops[] = {quote, '\\'};
  std::string text;
  Utf16Joiner joiner(text);
  while (true) {
    const std::size_t length = rest_.find_first_of(std::string_view(stops, std::size(stops)));
    if (length == std::string_view::npos) {
      throw DamagedPropertyList();
    }
    if (length != 0) {
      joiner.finish();
      text += rest_.substr(0, length);
    }
    const bool isEnd = rest_[length] == quote;
    rest_.remove_prefix(length + 1);
    if (isEnd) {
      joiner.finish();
      return text;
    }
    takeEscape(text, joiner);
  }
}

/// `rest_` stands after the backslash. Surrogates of a pair come as two escapes.
void TextReader::takeEscape(std::string& text, Utf16Joiner& joiner) {
  if (skip("U") || skip("u")) {
    joiner.append(static_cast<char16_t>(takeNumber(16, 4)));
    return;
  }
  joiner.finish();
  if (rest_.empty()) {
    throw DamagedPropertyList();
  }
  if (digitValue(rest_[0], 8)) {
    const unsigned byte = takeNumber(8, 3) & 0xFFU;
    appendUtf8(byte < 128 ? byte : upperOctalCharacters[byte - 128], text);
    return;
  }
  const char letter = rest_[0];
  rest_.remove_prefix(1);
  const auto* const found = std::find_if(
      std::begin(letterEscapes), std::end(letterEscapes), [&](const LetterEscape& escape) {
        return escape.letter == letter;
      });
  text += found == std::end(letterEscapes) ? letter : found->character;
}

unsigned TextReader::takeNumber(unsigned base, int maxDigits) {
  unsigned number = 0;
  int digits = 0;
  while (digits < maxDigits && !rest_.empty()) {
    const std::optional<unsigned> digit = digitValue(rest_[0], base);
    if (!digit) {
      break;
    }
    number = number * base + *digit;
    rest_.remove_prefix(1);
    ++digits;
  }
  if (digits == 0) {
    throw DamagedPropertyList();
  }
  return number;
}

/// Comments count as blanks.
void TextReader::skipBlanks() {
  while (true) {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n\f\v"), rest_.size()));
    if (skip("/*")) {
      skipThrough("*/");
    } else if (skip("//")) {
      rest_.remove_prefix(std::min(rest_.find_first_of("\r\n"), rest_.size()));
    } else {
      return;
    }
  }
}

void TextReader::skipThrough(std::string_view end) {
  const std::size_t position = rest_.find(end);
  if (position == std::string_view::npos) {
    throw DamagedPropertyList();
  }
  rest_.remove_prefix(position + end.size());
}

bool TextReader::skip(std::string_view prefix) {
  if (!rest_.starts_with(prefix)) {
    return false;
  }
  rest_.remove_prefix(prefix.size());
  return true;
}

void TextReader::expect(std::string_view punctuation) {
  skipBlanks();
  if (!skip(punctuation)) {
    throw DamagedPropertyList();
  }
}

}  // namespace

PropertyList readTextPropertyList(std::string_view text) {
  return TextReader(text).read();
}

}  // namespace tolvane
