#include "platform/desktop/accessibility/count_label.h"

#include <algorithm>
#include <array>

namespace tolvane::CountLabel {

namespace {

constexpr std::string_view ellipsis = "…";
constexpr std::array<std::string_view, 10> quotationMarks = {
    "\"", "“", "”", "„", "«", "»", "‘", "’", "「", "」"};
constexpr std::string_view noBreakSpace = "\u00A0";
constexpr std::string_view narrowNoBreakSpace = "\u202F";

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

std::string withoutBrackets(std::string_view label) {
  std::string text;
  int depth = 0;
  for (const char character : label) {
    depth += character == '(' ? 1 : 0;
    if (depth == 0) {
      text += character;
    }
    depth -= character == ')' && depth > 0 ? 1 : 0;
  }
  return text;
}

/// "1,234" and "1.5" count as two numbers: neither confirms anything it should not.
std::vector<std::size_t> numbersIn(std::string_view text) {
  constexpr std::size_t tooManyItems = 1'000'000;
  std::vector<std::size_t> numbers;
  bool isWithinNumber = false;
  for (const char character : text) {
    if (!isDigit(character)) {
      isWithinNumber = false;
      continue;
    }
    if (!isWithinNumber) {
      numbers.push_back(0);
    }
    isWithinNumber = true;
    const auto digit = static_cast<std::size_t>(character - '0');
    numbers.back() = std::min(numbers.back() * 10 + digit, tooManyItems);
  }
  return numbers;
}

/// Folders and files are counted apart, so the first two numbers may add up.
bool countsTo(std::string_view text, std::size_t count) {
  const std::vector<std::size_t> numbers = numbersIn(text);
  return (!numbers.empty() && numbers[0] == count) ||
         (numbers.size() > 1 && numbers[0] + numbers[1] == count);
}

/// Of "1 Folder sel…lected (4 B)" only the first number is certain to be a count.
bool mayCountTo(std::string_view shortened, std::size_t count) {
  const std::vector<std::size_t> numbers = numbersIn(shortened);
  return !numbers.empty() && numbers[0] > 0 && numbers[0] <= count;
}

bool names(std::string_view label, const std::string& name) {
  if (label.size() > name.size() && label.find(name) != std::string_view::npos) {
    return true;
  }
  const auto cut = label.find(ellipsis);
  return cut != std::string_view::npos && cut > 0 && name.starts_with(label.substr(0, cut));
}

std::string_view withoutSpaces(std::string_view text) {
  for (const std::string_view space : {noBreakSpace, narrowNoBreakSpace}) {
    if (text.starts_with(space)) {
      text.remove_prefix(space.size());
    }
    if (text.ends_with(space)) {
      text.remove_suffix(space.size());
    }
  }
  return text;
}

}  // namespace

bool confirms(std::string_view label, const std::vector<std::string>& itemNames) {
  if (itemNames.size() == 1 && names(label, itemNames.front())) {
    return true;
  }
  const auto cut = label.find(ellipsis);
  return cut == std::string_view::npos
             ? countsTo(withoutBrackets(label), itemNames.size())
             : mayCountTo(withoutBrackets(label.substr(0, cut)), itemNames.size());
}

std::string quotedName(std::string_view label) {
  std::size_t start = std::string_view::npos;
  std::size_t end = 0;
  for (const std::string_view mark : quotationMarks) {
    const auto first = label.find(mark);
    if (first != std::string_view::npos) {
      start = std::min(start, first);
      end = std::max(end, label.rfind(mark));
    }
  }
  if (start == std::string_view::npos) {
    return {};
  }
  for (const std::string_view mark : quotationMarks) {
    if (label.substr(start).starts_with(mark)) {
      start += mark.size();
      break;
    }
  }
  return start < end ? std::string(withoutSpaces(label.substr(start, end - start))) : std::string();
}

}  // namespace tolvane::CountLabel
