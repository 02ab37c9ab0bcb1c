#include "universal/archives/archive_listing.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/decimal_text.h"
#include "engine/primitives/limits.h"
#include "engine/primitives/split_text.h"

namespace tolvane::ArchiveListing {

namespace {

/// The fields of one entry that are judged. An absent one is empty, which means the same to every
/// rule but that of the path.
struct Entry {
  std::optional<std::string_view> path;
  std::string_view size;
  std::string_view mode;
  std::string_view symbolicLink;
  std::string_view hardLink;
  std::string_view attributes;
};

/// A later field of the same name replaces an earlier one.
void set(Entry& entry, std::string_view name, std::string_view value) {
  if (name == "Path") {
    entry.path = value;
  } else if (name == "Size") {
    entry.size = value;
  } else if (name == "Mode") {
    entry.mode = value;
  } else if (name == "Symbolic Link") {
    entry.symbolicLink = value;
  } else if (name == "Hard Link") {
    entry.hardLink = value;
  } else if (name == "Attributes") {
    entry.attributes = value;
  }
}

/// A block that tells of no entry has no path.
Entry entryOf(std::string_view block) {
  constexpr std::string_view equals = " = ";
  Entry entry;
  forEachPiece(block, "\n", [&](std::string_view line) {
    const std::size_t nameEnd = line.find(equals);
    if (nameEnd != std::string_view::npos) {
      set(entry, line.substr(0, nameEnd), line.substr(nameEnd + equals.size()));
    }
  });
  return entry;
}

bool leavesTheFolder(std::string_view path) {
  constexpr std::string_view forbidden("\\:\0", 3);
  if (path.starts_with('/') || path.find_first_of(forbidden) != std::string_view::npos) {
    return true;
  }
  const std::vector<std::string_view> parts = split(path, "/");
  return std::ranges::find(parts, "..") != parts.end();
}

bool isUnsafe(const Entry& entry, const ArchiveNames& names) {
  const std::string_view mode = entry.mode;
  const bool isPlain = mode.empty() || mode.front() == '-' || mode.front() == 'd';
  const bool isLink = !entry.symbolicLink.empty() || !entry.hardLink.empty() ||
                      entry.attributes.find('l') != std::string_view::npos;  // "lrwxrwxrwx"
  return !isPlain || isLink || leavesTheFolder(names.readable(*entry.path));
}

}  // namespace

void judge(std::string_view listing, const ArchiveNames& names) {
  int entries = 0;
  std::int64_t declared = 0;
  forEachPiece(listing, "\n\n", [&](std::string_view block) {
    const Entry entry = entryOf(block);
    if (!entry.path) {
      return;
    }
    ++entries;
    const std::int64_t size = DecimalText::parseWhole(entry.size).value_or(0);
    const bool overflows = __builtin_add_overflow(declared, size, &declared);
    if (overflows || isUnsafe(entry, names) || entries > Limits::maxArchiveEntries ||
        declared > Limits::maxExpandedBytes) {
      throw ConversionFailure::message(
          "This archive contains unsafe paths, links or too much expanded data.");
    }
  });
  if (entries == 0) {
    throw ConversionFailure::message("This archive is empty or cannot be inspected safely.");
  }
}

std::vector<std::string_view> paths(std::string_view listing) {
  std::vector<std::string_view> found;
  forEachPiece(listing, "\n\n", [&](std::string_view block) {
    if (const auto path = entryOf(block).path) {
      found.push_back(*path);
    }
  });
  return found;
}

}  // namespace tolvane::ArchiveListing
