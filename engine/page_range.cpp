#include "engine/page_range.h"

#include <cstdint>
#include <optional>
#include <vector>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/decimal_text.h"
#include "engine/primitives/split_text.h"

namespace tolvane {

namespace {

/// A page number: digits after an optional plus sign, in lowest...highest.
std::optional<int> pageNumber(std::string_view text, int lowest, int highest) {
  const std::optional<std::int64_t> number = DecimalText::parseWhole(text);
  return number && *number >= lowest && *number <= highest
             ? std::optional(static_cast<int>(*number))
             : std::nullopt;
}

/// Adds the pages of one part. @return false when it is malformed.
bool addPart(std::string_view part, int count, std::set<int>& pages) {
  const std::vector<std::string_view> ends = split(unpadded(part), "-");
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
  if (unpadded(text).empty()) {
    for (int page = 0; page < count; ++page) {
      pages.insert(page);
    }
    return pages;
  }
  for (const std::string_view part : split(text, ",")) {
    if (!addPart(part, count, pages)) {
      throw ConversionFailure::message("Use page ranges such as 1-3, 5 within this document.");
    }
  }
  return pages;
}

}  // namespace tolvane
