#pragma once

#include <string_view>
#include <vector>

#include "universal/archives/archive_names.h"

/// What an archive declares, as 7zz lists it: a block of "Name = value" lines an entry, blocks
/// separated by an empty line.
namespace tolvane::ArchiveListing {

/// Lets an archive pass that can be extracted: no path that leaves the folder, no links or devices,
/// at most 10,000 entries and 512 MiB.
/// @param listing bytes that are no UTF-8 mean nothing: what is looked for is ASCII.
/// @param names how its paths are to be read; the second byte of a character may look like a
/// backslash.
/// @throws ConversionFailure when the archive is unsafe or the listing tells of no entry.
void judge(std::string_view listing, const ArchiveNames& names = {});

/// @return the paths of all entries, which refer to `listing`.
[[nodiscard]] std::vector<std::string_view> paths(std::string_view listing);

}  // namespace tolvane::ArchiveListing
