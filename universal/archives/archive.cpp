#include "universal/archives/archive.h"

#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "platform/files/bytes.h"
#include "platform/files/file_names.h"
#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"
#include "universal/archives/archive_listing.h"
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

Arguments listArguments(const fs::path& input) {
  Arguments arguments = {"l", "-slt", "-ba"};
  if (hasWildcards(input)) {
    arguments.emplace_back("-spd");
  }
  arguments.push_back(input);
  return arguments;
}

Arguments extractArguments(const fs::path& input, const fs::path& payload) {
  // In the folder's name, a star would stand for the archive's. 7zz runs in the folder above.
  const fs::path folder = hasWildcards(payload) ? payload.filename() : payload;
  Arguments arguments = {"x", "-y", "-o" + folder.string()};
  if (hasWildcards(input)) {
    arguments.emplace_back("-spd");
  }
  arguments.push_back(input);
  return arguments;
}

void extract(const fs::path& input, const fs::path& payload, const JobContext& context) {
  FileSystem::createDirectory(payload, folderMode);
  context.toolchain.run({.name = "7zz",
                         .arguments = extractArguments(input, payload),
                         .in = context.workspace,
                         .timeout = timeLimit,
                         .whileRunning = ExtractedTree::Watch(payload, context.token)},
                        context.token);
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
    context.toolchain.run({.name = "7zz",
                           .arguments = {"a", "-tzip", output, "."},
                           .in = context.workspace,
                           .timeout = timeLimit,
                           .currentDirectory = payload},
                          context.token);
  } else {
    context.run("tar", {target == "gz" ? "-czf" : "-cf", output, "-C", payload, "."}, timeLimit);
  }
}

void repack(const fs::path& input,
            std::string_view target,
            const fs::path& output,
            const JobContext& context,
            Unwrapping unwrapping) {
  ArchiveListing::judge(asText(context.run("7zz", listArguments(input), timeLimit)));
  const fs::path payload = context.workspace / "payload";
  extract(input, payload, context);
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

}  // namespace

void archive(const fs::path& input,
             std::string_view target,
             const fs::path& output,
             const JobContext& context) {
  repack(input, target, output, context, Unwrapping::once);
}

}  // namespace tolvane::UniversalEngine
