#include "engine/page_range.h"

#include <charconv>
#include <optional>
#include <vector>

#include "engine/primitives/conversion_failure.h"

namespace tolvane {

namespace {

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  std::size_t start = 0;
  for (std::size_t end = text.find(separator); end != std::string_view::npos;
       end = text.find(separator, start)) {
    pieces.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

/// A page number: digits after an optional plus sign, in lowest...highest.
std::optional<int> pageNumber(std::string_view text, int lowest, int highest) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
  }
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && number >= lowest && number <= highest ? std::optional(number) : std::nullopt;
}

/// Adds the pages of one part. @return false when it is malformed.
bool addPart(std::string_view part, int count, std::set<int>& pages) {
  const std::vector<std::string_view> ends = split(trimmed(part), '-');
  if (ends.size() > 2) {
    return false;
  }
  const std::optional<int> first = pageNumber(ends.front(), 1, count);
  const std::optional<int> last = first ? pageNumber(ends.back(), *first, count) : std::nullopt;
  if (!last) {
    return false;
  }
  for (int page = *first; page <= *last; ++page) {
    pages.insert(page - 1);
  }
  return true;
}

}  // namespace

std::set<int> pageRange(std::string_view text, int count) {
  std::set<int> pages;
  if (trimmed(text).empty()) {
    for (int page = 0; page < count; ++page) {
      pages.insert(page);
    }
    return pages;
  }
  for (const std::string_view part : split(text, ',')) {
    if (!addPart(part, count, pages)) {
      throw ConversionFailure::message("Use page ranges such as 1-3, 5 within this document.");
    }
  }
  return pages;
}

}  // namespace tolvane
