#include "universal/archives/archive_listing.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <map>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/limits.h"

namespace tolvane::ArchiveListing {

namespace {

using Fields = std::map<std::string_view, std::string_view>;

/// Takes the text up to the separator, or all of it, off the front of `rest`.
std::string_view takeUntil(std::string_view separator, std::string_view& rest) {
  const std::size_t end = rest.find(separator);
  const std::string_view taken = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + separator.size());
  return taken;
}

/// A later line of the same name replaces an earlier one.
Fields fieldsOf(std::string_view block) {
  constexpr std::string_view equals = " = ";
  Fields fields;
  while (!block.empty()) {
    std::string_view value = takeUntil("\n", block);
    if (value.find(equals) != std::string_view::npos) {
      const std::string_view name = takeUntil(equals, value);
      fields[name] = value;
    }
  }
  return fields;
}

/// Empty when there is no such field, which means the same to every rule.
std::string_view valueOf(const Fields& fields, std::string_view name) {
  const auto found = fields.find(name);
  return found == fields.end() ? std::string_view() : found->second;
}

/// 0 when the field is absent or no decimal number of 64 bits.
std::int64_t sizeOf(const Fields& fields) {
  std::string_view text = valueOf(fields, "Size");
  if (text.starts_with('+') && !text.starts_with("+-")) {
    text.remove_prefix(1);
  }
  std::int64_t size = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), size);
  const bool isNumber = result.ec == std::errc() && result.ptr == text.data() + text.size();
  return isNumber ? size : 0;
}

bool leavesTheFolder(std::string_view path) {
  constexpr std::string_view forbidden("\\:\0", 3);
  if (path.starts_with('/') || path.find_first_of(forbidden) != std::string_view::npos) {
    return true;
  }
  while (!path.empty()) {
    if (takeUntil("/", path) == "..") {
      return true;
    }
  }
  return false;
}

bool isUnsafe(const Fields& fields) {
  const std::string_view mode = valueOf(fields, "Mode");
  const bool isPlain = mode.empty() || mode.front() == '-' || mode.front() == 'd';
  return !isPlain || leavesTheFolder(valueOf(fields, "Path")) ||
         !valueOf(fields, "Symbolic Link").empty() || !valueOf(fields, "Hard Link").empty() ||
         // As in "lrwxrwxrwx".
         valueOf(fields, "Attributes").find('l') != std::string_view::npos;
}

}  // namespace

void judge(std::string_view listing) {
  int entries = 0;
  std::int64_t declared = 0;
  while (!listing.empty()) {
    const Fields fields = fieldsOf(takeUntil("\n\n", listing));
    if (!fields.contains("Path")) {
      continue;
    }
    ++entries;
    const bool overflows = __builtin_add_overflow(declared, sizeOf(fields), &declared);
    if (overflows || isUnsafe(fields) || entries > Limits::maxArchiveEntries ||
        declared > Limits::maxExpandedBytes) {
      throw ConversionFailure::message(
          "This archive contains unsafe paths, links or too much expanded data.");
    }
  }
  if (entries == 0) {
    throw ConversionFailure::message("This archive is empty or cannot be inspected safely.");
  }
}

}  // namespace tolvane::ArchiveListing
