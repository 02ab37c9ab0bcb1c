#include "universal/media/media.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/files/file_system.h"
#include "platform/files/platform_error.h"
#include "universal/media/media_command.h"
#include "universal/media/media_probe.h"

namespace tolvane::UniversalEngine {

namespace fs = std::filesystem;

namespace {

/// The engine takes a "%" in the path of a picture or a segment for a counter. One in the name of a
/// folder is kept from it: the workspace, in which engines run, need not be written.
std::string outputPath(const fs::path& output, const fs::path& workspace) {
  const bool isReadAsPattern = workspace.string().find('%') != std::string::npos;
  return (isReadAsPattern ? output.lexically_relative(workspace) : output).string();
}

void run(const fs::path& input,
         const MediaCommand& command,
         const fs::path& output,
         const JobContext& context) {
  Arguments arguments = mediaPrefix(input);
  arguments.insert(arguments.end(), command.arguments.begin(), command.arguments.end());
  arguments.push_back(outputPath(output, context.workspace));
  context.run("ffmpeg", std::move(arguments), command.timeout, {input});
}

std::vector<fs::path> sortedEntries(const fs::path& folder) {
  std::vector<fs::path> entries;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; entry != end && !error;
       entry.increment(error)) {
    entries.push_back(entry->path());
  }
  if (error) {
    throw PlatformError::fromErrno("read", folder, error.value());
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

}  // namespace

Arguments mediaHead() {
  return {"-hide_banner", "-loglevel", "error", "-nostdin", "-y"};
}

Arguments mediaPrefix(const fs::path& input) {
  Arguments arguments = mediaHead();
  const Arguments sources = allowedSources();
  arguments.insert(arguments.end(), sources.begin(), sources.end());
  arguments.insert(arguments.end(), {"-i", input.string()});
  return arguments;
}

void media(const FileInfo& info,
           std::string_view target,
           std::optional<std::string_view> tool,
           const fs::path& output,
           const Value::Map& options,
           const JobContext& context) {
  const Value::Map probed = probe(info.url, context);
  run(info.url, mediaCommand({target, tool, options, probed}), output, context);
}

std::vector<fs::path> mediaSegments(const FileInfo& info,
                                    const Value::Map& options,
                                    const JobContext& context) {
  const fs::path segments = context.workspace / "segments";
  FileSystem::createDirectory(segments, FileSystem::ownerOnly);
  run(info.url, segmentCommand(options), segments / "segment-%03d.mp4", context);
  return sortedEntries(segments);
}

}  // namespace tolvane::UniversalEngine
