#include "universal/tools/metadata_report.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <fmt/format.h>

#include "engine/json/value_json.h"
#include "platform/documents/pdf_document.h"
#include "platform/files/file_system.h"
#include "platform/images/image_decoder.h"
#include "universal/media/media_probe.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

/// Nothing of a PDF that does not open.
void addDocument(Value::Map& report, const fs::path& file) try {
  const std::shared_ptr<PdfDocument> document = pdfLibrary().open(file);
  report.emplace("pages", document->pageCount());
  Value::Map attributes;
  for (const auto& [key, text] : document->attributes()) {
    attributes.emplace(key, text);
  }
  if (!attributes.empty()) {
    report.emplace("attributes", std::move(attributes));
  }
} catch (const PlatformError&) {
}

/// On one line, by name.
std::string textOf(const ImageProperties& properties) {
  return fmt::format(
      "{{ColorModel = {}; Depth = {}; HasAlpha = {}; HasColorProfile = {}; Orientation = {}; "
      "PixelHeight = {}; PixelWidth = {}}}",
      properties.colorModel,
      properties.depth,
      properties.hasAlpha ? 1 : 0,
      properties.hasColorProfile ? 1 : 0,
      properties.orientation,
      properties.height,
      properties.width);
}

/// Nothing of an image that does not open.
void addImage(Value::Map& report, const fs::path& file) try {
  if (const std::optional<ImageProperties> properties = imageDecoder().properties(file)) {
    report.emplace("properties", textOf(*properties));
  }
} catch (const PlatformError&) {
}

void addMedia(Value::Map& report, const fs::path& file, const JobContext& context) {
  if (context.toolchain.find("ffprobe")) {
    report.emplace("media", probe(file, context));
  }
}

Value::Map reportOf(const FileInfo& info, const JobContext& context) {
  const FileSystem::Attributes attributes = FileSystem::attributes(info.url);
  Value::Map report = {{"name", info.url.filename().string()},
                       {"type", name(info.kind)},
                       {"bytes", attributes.isRegularFile ? attributes.size : 0}};
  switch (info.kind) {
    case FileKind::pdf:
      addDocument(report, info.url);
      break;
    case FileKind::image:
      addImage(report, info.url);
      break;
    case FileKind::audio:
    case FileKind::video:
      addMedia(report, info.url, context);
      break;
    default:
      break;
  }
  return report;
}

}  // namespace

fs::path metadataReport(const FileInfo& info, const JobContext& context) {
  const std::string json = ValueJson::write(reportOf(info, context), ValueJson::Layout::indented);
  fs::path output = context.workspace / "result-metadata.json";
  FileSystem::writeAtomically(output, asBytes(json));
  return output;
}

}  // namespace tolvane::UniversalEngine
