#include "universal/media/media_tools.h"

#include <string>

#include "universal/media/media.h"

namespace tolvane::UniversalEngine {

namespace fs = std::filesystem;

namespace {

std::string_view extensionFor(FileKind kind, std::string_view id) {
  if (id == "snapshot" || id == "visualize") {
    return "png";
  }
  return kind == FileKind::video ? "mp4" : "m4a";
}

}  // namespace

std::vector<fs::path> mediaTool(const FileInfo& info,
                                std::string_view id,
                                const Value::Map& options,
                                const JobContext& context) {
  if (id == "split") {
    return mediaSegments(info, options, context);
  }
  const std::string_view extension = extensionFor(info.kind, id);
  const fs::path output =
      context.workspace / ("result-" + std::string(id) + "." + std::string(extension));
  media(info, extension, id, output, options, context);
  return {output};
}

}  // namespace tolvane::UniversalEngine
