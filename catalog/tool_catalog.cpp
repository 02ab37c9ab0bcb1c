#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>

#include "catalog/capability_catalog.h"
#include "catalog/engine_requirements.h"
#include "catalog/labels.h"
#include "catalog/text_tables.h"
#include "catalog/tool_fields.h"
#include "platform/files/file_names.h"

namespace tolvane::CapabilityCatalog {

namespace {

using Names = std::span<const std::string_view>;

constexpr auto imageTools = std::to_array<std::string_view>(
    {"compress", "metadata", "edit", "annotate", "background", "crop", "redact"});
constexpr auto pdfTools =
    std::to_array<std::string_view>({"compress", "metadata", "split", "organize", "rotate"});
constexpr auto videoTools = std::to_array<std::string_view>(
    {"compress", "metadata", "mute", "trim", "crop", "speed", "snapshot", "split", "redact"});
constexpr auto audioTools = std::to_array<std::string_view>(
    {"compress", "metadata", "normalize", "visualize", "trim", "channels", "bleep"});

constexpr auto severalImagesTools =
    std::to_array<std::string_view>({"compress", "metadata", "crop", "create_pdf", "collage"});
constexpr auto severalPdfsTools = std::to_array<std::string_view>({"merge"});
constexpr auto severalVideosTools = std::to_array<std::string_view>({"join"});

/// The tools for one file or for several of a kind, in the order in which they are offered.
Names toolsOf(FileKind kind, std::size_t fileCount) {
  const bool several = fileCount > 1;
  switch (kind) {
    case FileKind::image:
      return several ? Names(severalImagesTools) : Names(imageTools);
    case FileKind::pdf:
      return several ? Names(severalPdfsTools) : Names(pdfTools);
    case FileKind::video:
      return several ? Names(severalVideosTools) : Names(videoTools);
    case FileKind::audio:
      return audioTools;
    default:
      return {};
  }
}

std::optional<std::string> pdfAction(std::string_view tool) {
  constexpr std::array<TextTables::Row, 4> actions = {{{"split", "split_pdf"},
                                                       {"organize", "edit_pdf"},
                                                       {"rotate", "rotate_pdf"},
                                                       {"merge", "merge_pdf"}}};
  return TextTables::entry(actions, tool);
}

std::string_view outputExtension(FileKind kind, std::string_view tool) {
  if (tool == "metadata") {
    return "json";
  }
  if (TextTables::isOneOf(tool, {"snapshot", "visualize", "collage"})) {
    return "png";
  }
  if (tool == "create_pdf" || kind == FileKind::pdf) {
    return "pdf";
  }
  if (kind == FileKind::video) {
    return "mp4";
  }
  return kind == FileKind::audio ? "m4a" : "png";
}

std::string_view warning(std::string_view tool) {
  if (tool == "join") {
    return "Re-encodes clips to consistent dimensions and frame rate, preserving audio. Clips "
           "without audio receive a silent track.";
  }
  if (tool == "redact") {
    return "Permanently replaces pixels in the output. Review the entire result before sharing; "
           "metadata may need separate removal.";
  }
  if (tool == "compress") {
    return "Compression can change quality. Some already optimized files may not get smaller.";
  }
  return "";
}

std::optional<std::string> firstRequirement(const std::vector<FileInfo>& files,
                                            std::string_view tool,
                                            EngineLookup& engines) {
  for (const FileInfo& file : files) {
    if (auto missing =
            toolRequirement(file.kind, FileNames::lowerExtension(file.url), tool, engines)) {
      return missing;
    }
  }
  return std::nullopt;
}

FileCapability offer(const std::vector<FileInfo>& files,
                     std::string_view tool,
                     EngineLookup& engines) {
  const FileKind kind = files.front().kind;
  FileCapability capability;
  capability.id.append("tool.").append(tool);
  capability.title = Labels::title(tool).value_or(Labels::capitalized(tool));
  capability.ext = outputExtension(kind, tool);
  capability.summary = Labels::capitalized(name(kind)) + " · local operation";
  capability.requirement = firstRequirement(files, tool, engines);
  capability.warning = warning(tool);
  capability.combined = TextTables::isOneOf(tool, {"collage", "join", "create_pdf"});
  capability.nativeAction = kind == FileKind::pdf ? pdfAction(tool) : std::nullopt;
  capability.fields = toolFields(kind, tool);
  return capability;
}

}  // namespace

std::vector<FileCapability> tools(const std::vector<FileInfo>& files,
                                  const LocalToolchain& toolchain) {
  if (files.empty()) {
    return {};
  }
  const FileKind kind = files.front().kind;
  if (!std::all_of(
          files.begin(), files.end(), [kind](const FileInfo& file) { return file.kind == kind; })) {
    return {};
  }
  std::vector<FileCapability> offers;
  EngineLookup engines(toolchain);
  for (const std::string_view tool : toolsOf(kind, files.size())) {
    offers.push_back(offer(files, tool, engines));
  }
  return offers;
}

}  // namespace tolvane::CapabilityCatalog
