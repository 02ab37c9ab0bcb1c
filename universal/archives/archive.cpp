#include "universal/archives/archive.h"

#include <algorithm>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/bytes.h"
#include "platform/files/file_names.h"
#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"
#include "platform/text/text_encoding.h"
#include "universal/archives/archive_listing.h"
#include "universal/archives/archive_names.h"
#include "universal/archives/extracted_tree.h"
#include "universal/job/arguments.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr double timeLimit = 120;  // seconds
constexpr unsigned folderMode = 0755;

/// Whether a TAR inside a gzip file is taken apart. Only once: archives nested in each other would
/// fill the disk one level at a time.
enum class Unwrapping { once, never };

/// 7zz takes these for wildcards.
bool hasWildcards(const fs::path& path) {
  return path.native().find_first_of("*?") != std::string::npos;
}

/// What 7zz is told to read. To take wildcards for characters it would look through the archive's
/// folder, which is closed to it, so that such an archive is read through a link. Its name is kept
/// as far as it goes, because 7zz may name what it finds inside after it.
fs::path plainPath(const fs::path& input, const JobContext& context) {
  if (!hasWildcards(input)) {
    return input;
  }
  const fs::path folder = context.freshFile("archive-", "");
  FileSystem::createDirectory(folder, folderMode);
  std::string name = input.filename();
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c == '*' || c == '?'; }, '_');
  std::error_code problem;
  fs::create_symlink(input, folder / name, problem);
  if (problem) {
    throw PlatformError::fromErrno("link to", input, problem.value());
  }
  return folder.filename() / name;  // 7zz runs in the workspace, whose path may have wildcards
}

Arguments extractArguments(const fs::path& read, const fs::path& payload) {
  // In the folder's name, a star would stand for the archive's. 7zz runs in the folder above.
  const fs::path folder = hasWildcards(payload) ? payload.filename() : payload;
  return {"x", "-y", "-o" + folder.string(), read};
}

/// @param read the input as 7zz is told of it.
void extract(const fs::path& input,
             const fs::path& read,
             const fs::path& payload,
             const JobContext& context) {
  FileSystem::createDirectory(payload, folderMode);
  context.run({.name = "7zz",
               .arguments = extractArguments(read, payload),
               .in = context.workspace,
               .timeout = timeLimit,
               .inputs = {input},
               .whileRunning = ExtractedTree::Watch(payload, context.token)});
  ExtractedTree::check(payload, context.token);
}

bool isGzip(const fs::path& file) {
  const std::string extension = FileNames::lowerExtension(file);
  return extension == "gz" || extension == "gzip";
}

bool isTar(const fs::path& file) {
  constexpr std::size_t headerSize = 512;
  constexpr std::size_t markOffset = 257;
  const Bytes header = FileSystem::readPrefix(file, headerSize);
  return FileNames::lowerExtension(file) == "tar" ||
         (header.size() > markOffset && asText(header).substr(markOffset).starts_with("ustar"));
}

/// The TAR that is all there is in the folder, if so.
std::optional<fs::path> onlyTar(const fs::path& folder) {
  std::error_code error;
  fs::directory_iterator item(folder, error);
  if (error) {
    throw PlatformError::fromErrno("read", folder, error.value());
  }
  if (item == fs::directory_iterator() || !item->is_regular_file(error)) {
    return std::nullopt;
  }
  fs::path first = item->path();
  item.increment(error);
  const bool isOnly = item == fs::directory_iterator() && !error;
  return isOnly && isTar(first) ? std::optional(first) : std::nullopt;
}

void create(const fs::path& payload,
            std::string_view target,
            const fs::path& output,
            const JobContext& context) {
  if (target == "zip") {
    // From inside the folder, so that names begin there; the log is kept out of it.
    context.run({.name = "7zz",
                 .arguments = {"a", "-tzip", output, "."},
                 .in = context.workspace,
                 .timeout = timeLimit,
                 .currentDirectory = payload});
  } else {
    context.run("tar", {target == "gz" ? "-czf" : "-cf", output, "-C", payload, "."}, timeLimit);
  }
}

bool isZip(const fs::path& file) {
  constexpr std::string_view signature = "PK";
  return asText(FileSystem::readPrefix(file, signature.size())) == signature;
}

/// Lists an archive and lets it pass only if it can be extracted.
/// @param read the input as 7zz is told of it.
ArchiveNames judgedNames(const fs::path& input, const fs::path& read, const JobContext& context) {
  const Bytes printed = context.run("7zz", {"l", "-slt", "-ba", read}, timeLimit, {input});
  const std::string_view listing = asText(printed);
  const bool isClear = TextEncoding::isUtf8(printed) || !isZip(input);
  ArchiveNames names = isClear ? ArchiveNames() : ArchiveNames(ArchiveListing::paths(listing));
  ArchiveListing::judge(listing, names);
  return names;
}

void repack(const fs::path& input,
            std::string_view target,
            const fs::path& output,
            const JobContext& context,
            Unwrapping unwrapping) {
  const fs::path read = plainPath(input, context);
  const ArchiveNames names = judgedNames(input, read, context);
  const fs::path payload = context.workspace / "payload";
  extract(input, read, payload, context);
  names.applyTo(payload, context.token);
  if (unwrapping == Unwrapping::once && isGzip(input)) {
    if (const std::optional<fs::path> tar = onlyTar(payload)) {
      const fs::path contents = context.workspace / "tar-contents";
      FileSystem::createDirectory(contents, folderMode);
      const fs::path result = contents / output.filename();
      repack(*tar, target, result, context.in(contents), Unwrapping::never);
      FileSystem::move(result, output);
      return;
    }
  }
  create(payload, target, output, context);
}

/// 7zz says the same of a file that is cut short as of any other damage, and reads how much a gzip
/// file holds from its end, which is then another. tar knows.
bool isCutShort(const fs::path& input, const JobContext& context) try {
  constexpr double timeout = 10;  // seconds
  const Bytes printed = context.run({.name = "tar",
                                     .arguments = {"--force-local", "-tzf", input},
                                     .in = context.workspace,
                                     .timeout = timeout,
                                     .inputs = {input},
                                     .environment = {{"LC_ALL", "C"}},
                                     .accepted = {0, 1, 2}});
  return asText(printed).find("gzip: stdin: unexpected end of file") != std::string_view::npos;
} catch (const ConversionFailure& failure) {
  if (failure.isCancelled()) {
    throw;
  }
  return false;
}

}  // namespace

void archive(const fs::path& input,
             std::string_view target,
             const fs::path& output,
             const JobContext& context) {
  try {
    repack(input, target, output, context, Unwrapping::once);
  } catch (const ConversionFailure& failure) {
    if (!failure.isCancelled() && isGzip(input) && isCutShort(input, context)) {
      throw ConversionFailure::message("This archive is cut short. Get a complete copy of it.");
    }
    throw;
  }
}

}  // namespace tolvane::UniversalEngine
