#include "formats/worksheet_text.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string_view>

#include <fmt/format.h>

#include "formats/xml_text.h"

namespace tolvane::WorksheetText {

namespace {

// Characters of Unicode that XML knows no way to write.
constexpr std::string_view noncharacters[] = {"\uFFFE", "\uFFFF"};

/// XML can hold none of these, and makes a line feed of a carriage return.
bool isUnwritable(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code < 0x20 && character != '\t' && character != '\n';
}

bool isNoncharacter(std::string_view character) {
  return std::ranges::find(noncharacters, character) != std::end(noncharacters);
}

/// @return whether the text goes on with what readers take for a character: "_x000C_".
bool startsSpelling(std::string_view text) {
  constexpr std::size_t length = 7;
  return text.size() >= length && text.starts_with("_x") && text[length - 1] == '_' &&
         std::all_of(text.begin() + 2, text.begin() + length - 1, [](unsigned char digit) {
           return std::isxdigit(digit) != 0;
         });
}

/// The cell's text with such characters spelled by their codes (ECMA-376 Part 1, 22.9.2.19).
std::string spelled(std::string_view cell) {
  std::string result;
  for (std::size_t position = 0; position < cell.size(); ++position) {
    const std::string_view character = cell.substr(position, noncharacters[0].size());
    if (isUnwritable(cell[position])) {
      result += fmt::format("_x{:04X}_", static_cast<unsigned char>(cell[position]));
    } else if (isNoncharacter(character)) {
      result += character == noncharacters[0] ? "_xFFFE_" : "_xFFFF_";
      position += character.size() - 1;
    } else if (startsSpelling(cell.substr(position))) {
      result += "_x005F_";
    } else {
      result += cell[position];
    }
  }
  return result;
}

bool needsSpelling(const std::string& cell) {
  return std::any_of(cell.begin(), cell.end(), isUnwritable) ||
         cell.find("_x") != std::string::npos ||
         std::ranges::any_of(noncharacters, [&](std::string_view character) {
           return cell.find(character) != std::string::npos;
         });
}

}  // namespace

void appendRow(std::string& text, std::size_t number, const TableRow& row) {
  text += "<row r=\"";
  text += std::to_string(number);
  text += "\">";
  for (const std::string& cell : row) {
    text += R"(<c t="inlineStr"><is><t xml:space="preserve">)";
    text += UniversalFormats::xml(needsSpelling(cell) ? spelled(cell) : cell);
    text += "</t></is></c>";
  }
  text += "</row>";
}

}  // namespace tolvane::WorksheetText
