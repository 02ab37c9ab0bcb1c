#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "catalog/capability_catalog.h"
#include "catalog/labels.h"
#include "catalog/text_tables.h"
#include "platform/files/file_names.h"

namespace tolvane::CapabilityCatalog {

namespace {

using Targets = std::span<const std::string_view>;

constexpr auto imageTargets = std::to_array<std::string_view>(
    {"jpg", "png", "webp", "heic", "tiff", "avif", "bmp", "pdf", "docx"});
constexpr auto pdfTargets =
    std::to_array<std::string_view>({"docx", "pptx", "xlsx", "jpg", "png", "epub", "txt", "md"});
constexpr auto videoTargets = std::to_array<std::string_view>({"mp4", "mov", "gif", "m4a", "mp3"});
constexpr auto audioTargets =
    std::to_array<std::string_view>({"mp3", "m4a", "wav", "flac", "ogg", "opus", "aiff"});
constexpr auto documentTargets = std::to_array<std::string_view>(
    {"pdf", "docx", "txt", "md", "html", "epub", "png", "jpg", "rtf", "odt"});
constexpr auto presentationTargets = std::to_array<std::string_view>({"pdf", "jpg", "png"});
constexpr auto ebookTargets = std::to_array<std::string_view>({"pdf", "docx", "txt", "md", "html"});
constexpr auto spreadsheetTargets =
    std::to_array<std::string_view>({"xlsx", "ods", "csv", "tsv", "pdf"});
constexpr auto subtitleTargets = std::to_array<std::string_view>({"srt", "vtt", "txt"});
constexpr auto archiveTargets = std::to_array<std::string_view>({"zip", "tar", "gz"});

/// In the order in which they are offered.
Targets targetsOf(FileKind kind) {
  switch (kind) {
    case FileKind::image:
      return imageTargets;
    case FileKind::pdf:
      return pdfTargets;
    case FileKind::video:
      return videoTargets;
    case FileKind::audio:
      return audioTargets;
    case FileKind::document:
      return documentTargets;
    case FileKind::presentation:
      return presentationTargets;
    case FileKind::ebook:
      return ebookTargets;
    case FileKind::spreadsheet:
      return spreadsheetTargets;
    case FileKind::subtitle:
      return subtitleTargets;
    case FileKind::archive:
      return archiveTargets;
  }
  return {};
}

/// All that the catalog needs to know of a file.
struct Source {
  FileKind kind;
  std::string extension;  // lower case
};

std::vector<Source> sourcesOf(const std::vector<FileInfo>& files) {
  std::vector<Source> sources;
  sources.reserve(files.size());
  for (const FileInfo& file : files) {
    sources.push_back({file.kind, FileNames::lowerExtension(file.url)});
  }
  return sources;
}

bool allAllow(std::string_view target, const std::vector<Source>& sources) {
  return std::all_of(sources.begin(), sources.end(), [target](const Source& source) {
    return TextTables::contains(targetsOf(source.kind), target);
  });
}

std::optional<std::string> firstRequirement(const std::vector<Source>& sources,
                                            std::string_view target,
                                            EngineLookup& engines) {
  for (const Source& source : sources) {
    if (auto missing = requirement(source.kind, source.extension, target, engines)) {
      return missing;
    }
  }
  return std::nullopt;
}

std::string_view lossOfLayout(FileKind kind, std::string_view target) {
  if (kind == FileKind::pdf && TextTables::isOneOf(target, {"docx", "md", "txt", "epub"})) {
    return "Text reconstruction: columns, tables and original layout may change. Scanned pages use "
           "local OCR; review the result.";
  }
  if (kind == FileKind::pdf && target == "pptx") {
    return "One rasterized PDF page per slide. Appearance is retained as an image; slide text is "
           "not editable.";
  }
  if (kind == FileKind::pdf && target == "xlsx") {
    return "Experimental table extraction only. Requires consistently delimited rows; arbitrary "
           "PDF layouts are not spreadsheets.";
  }
  if (kind == FileKind::image && target == "docx") {
    return "Apple Vision OCR exports recognized text. The image layout is not reconstructed.";
  }
  return "";
}

void appendSentence(std::string& text, std::string_view sentence) {
  if (!text.empty()) {
    text += ' ';
  }
  text += sentence;
}

std::string warning(const Source& first, std::string_view target) {
  std::string text(lossOfLayout(first.kind, target));
  if (TextTables::isOneOf(target, {"jpg", "bmp", "heic"})) {
    appendSentence(text,
                   "Transparent areas are filled with white. Lossy formats can change quality.");
  }
  if (TextTables::isOneOf(first.extension,
                          {"pages", "key", "numbers", "ppt", "pptx", "xls", "xlsx", "ods"})) {
    appendSentence(text,
                   "Export fidelity depends on the local office engine. Review fonts, formulas and "
                   "page layout.");
  }
  return text;
}

Value::List fields(FileKind kind, std::string_view target) {
  switch (kind) {
    case FileKind::image:
    case FileKind::video:
    case FileKind::audio:
      return {field("quality", "Quality (0.1–1)", 0.9, "number")};
    case FileKind::pdf:
      if (!TextTables::isOneOf(target, {"jpg", "png", "pptx"})) {
        return {field("ocr", "OCR scanned pages", true, "bool")};
      }
      return {};
    default:
      return {};
  }
}

FileCapability offer(std::string_view target,
                     const std::vector<Source>& sources,
                     EngineLookup& engines) {
  const Source& first = sources.front();
  const std::string spelledOut = FileNames::upper(target);
  FileCapability capability;
  capability.id.append("convert.").append(target);
  capability.title = Labels::title(target).value_or(spelledOut);
  capability.ext = target == "gz" ? "tar.gz" : target;
  capability.summary = Labels::capitalized(name(first.kind)) + " → " + spelledOut + " · offline";
  capability.requirement = firstRequirement(sources, target, engines);
  capability.warning = warning(first, target);
  capability.fields = fields(first.kind, target);
  return capability;
}

}  // namespace

std::vector<FileCapability> formats(const std::vector<FileInfo>& files,
                                    const LocalToolchain& toolchain) {
  std::vector<FileCapability> offers;
  if (files.empty()) {
    return offers;
  }
  const std::vector<Source> sources = sourcesOf(files);
  EngineLookup engines(toolchain);
  for (const std::string_view target : targetsOf(sources.front().kind)) {
    if (allAllow(target, sources)) {
      offers.push_back(offer(target, sources, engines));
    }
  }
  return offers;
}

}  // namespace tolvane::CapabilityCatalog
