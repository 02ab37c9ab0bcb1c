#include "universal/tools/tool.h"

#include "engine/primitives/conversion_failure.h"
#include "universal/images/image_tools.h"
#include "universal/media/media_tools.h"
#include "universal/tools/metadata_report.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

fs::path compressedPdf(const fs::path& input, const JobContext& context) {
  constexpr double timeLimit = 120;  // seconds
  constexpr int succeeded = 0;
  constexpr int succeededWithWarnings = 3;
  fs::path output = context.workspace / "result-compressed.pdf";
  context.run({.name = "qpdf",
               .arguments = {"--object-streams=generate",
                             "--recompress-flate",
                             "--compression-level=9",
                             input.string(),
                             output.string()},
               .in = context.workspace,
               .timeout = timeLimit,
               .inputs = {input},
               .accepted = {succeeded, succeededWithWarnings}});
  return output;
}

}  // namespace

std::vector<fs::path> tool(const FileInfo& info,
                           std::string_view id,
                           const Value::Map& options,
                           const JobContext& context) {
  if (id == "metadata") {
    return {metadataReport(info, context)};
  }
  if (info.kind == FileKind::pdf && id == "compress") {
    return {compressedPdf(info.url, context)};
  }
  if (info.kind == FileKind::video || info.kind == FileKind::audio) {
    return mediaTool(info, id, options, context);
  }
  if (info.kind == FileKind::image) {
    return {imageTool(info, id, options, context)};
  }
  throw ConversionFailure::message("Use the page editor or a supported tool for this selection.");
}

}  // namespace tolvane::UniversalEngine
