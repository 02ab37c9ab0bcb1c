#include "catalog/engine_requirements.h"

#include <algorithm>
#include <array>

#include "catalog/capability_catalog.h"
#include "catalog/text_tables.h"

namespace tolvane::CapabilityCatalog {

namespace {

using Requirement = std::optional<std::string>;

/// The only program that opens files of one extension.
struct OfficeApplication {
  std::string_view source;
  std::string_view name;
  std::string_view bundle;
};

constexpr std::array<OfficeApplication, 3> officeApplications = {
    {{"pages", "Pages", "/Applications/Pages.app"},
     {"key", "Keynote", "/Applications/Keynote.app"},
     {"numbers", "Numbers", "/Applications/Numbers.app"}}};

const OfficeApplication* applicationFor(std::string_view source) {
  const auto* found = std::find_if(
      officeApplications.begin(),
      officeApplications.end(),
      [source](const OfficeApplication& application) { return application.source == source; });
  return found != officeApplications.end() ? found : nullptr;
}

Requirement needs(const OfficeApplication& application, EngineLookup& engines) {
  if (engines.hasApplication(application.bundle)) {
    return std::nullopt;
  }
  return "Requires Apple " + std::string(application.name) + ", which is not installed.";
}

Requirement needs(std::string_view engine, EngineLookup& engines) {
  if (engines.hasEngine(engine)) {
    return std::nullopt;
  }
  return "Requires local " + std::string(engine) + ". Install it and reselect the file.";
}

/// @param name the engine as tools call it to the user.
Requirement toolNeeds(std::string_view engine, std::string_view name, EngineLookup& engines) {
  if (engines.hasEngine(engine)) {
    return std::nullopt;
  }
  return "Requires local " + std::string(name) + ".";
}

/// Conversions and tools ask for ImageMagick in the same words.
Requirement needsImageMagick(EngineLookup& engines) {
  return toolNeeds("magick", "ImageMagick (magick)", engines);
}

/// What reading a picture needs, whatever is made of it.
Requirement pictureRequirement(std::string_view source, EngineLookup& engines) {
  if (Requirement missing = needsImageMagick(engines)) {
    return missing;
  }
  const bool isDrawn = source != "svg" || engines.drawsVectorImages();
  return isDrawn ? std::nullopt : needs("rsvg-convert", engines);
}

Requirement imageRequirement(std::string_view source,
                             std::string_view target,
                             EngineLookup& engines) {
  if (Requirement missing = pictureRequirement(source, engines)) {
    return missing;
  }
  return target == "docx" ? needs("pandoc", engines) : std::nullopt;
}

Requirement pdfRequirement(std::string_view target, EngineLookup& engines) {
  return TextTables::isOneOf(target, {"docx", "pptx", "epub"}) ? needs("pandoc", engines)
                                                               : std::nullopt;
}

Requirement mediaRequirement(EngineLookup& engines) {
  Requirement missing = needs("ffmpeg", engines);
  return missing ? missing : needs("ffprobe", engines);
}

Requirement archiveRequirement(std::string_view source,
                               std::string_view target,
                               EngineLookup& engines) {
  if (Requirement missing = needs("7zz", engines)) {
    return missing;
  }
  if (source == "rar" && !engines.unpacksRar()) {
    return "Requires a local 7zz that unpacks RAR. Install it and reselect the file.";
  }
  return target == "zip" ? std::nullopt : needs("tar", engines);
}

Requirement spreadsheetRequirement(std::string_view source,
                                   std::string_view target,
                                   EngineLookup& engines) {
  const bool isDelimitedText = TextTables::isOneOf(source, {"csv", "tsv"});
  if (isDelimitedText && TextTables::isOneOf(target, {"csv", "tsv", "xlsx"})) {
    return std::nullopt;
  }
  return needs("soffice", engines);
}

Requirement documentRequirement(std::string_view source,
                                std::string_view target,
                                EngineLookup& engines) {
  const bool isPaged = TextTables::isOneOf(target, {"pdf", "png", "jpg"});
  if (isPaged && TextTables::isOneOf(source, {"docx", "odt"})) {
    return needs("soffice", engines);
  }
  if (TextTables::isOneOf(source, {"html", "htm"})) {
    // The suite lays it out; else pandoc reads it, although the text engine writes it.
    return isPaged && engines.hasEngine("soffice") ? std::nullopt : needs("pandoc", engines);
  }
  const bool isPlainOrRich =
      TextTables::isOneOf(source, {"txt", "md", "markdown", "rtf", "rtfd", "textclipping"});
  if (isPlainOrRich && (isPaged || TextTables::isOneOf(target, {"txt", "md", "rtf", "html"}))) {
    return std::nullopt;
  }
  return needs("pandoc", engines);
}

}  // namespace

Requirement requirement(FileKind kind,
                        std::string_view source,
                        std::string_view target,
                        EngineLookup& engines) {
  if (const OfficeApplication* application = applicationFor(source)) {
    return needs(*application, engines);
  }
  switch (kind) {
    case FileKind::image:
      return imageRequirement(source, target, engines);
    case FileKind::pdf:
      return pdfRequirement(target, engines);
    case FileKind::video:
    case FileKind::audio:
      return mediaRequirement(engines);
    case FileKind::presentation:
      return needs("soffice", engines);
    case FileKind::spreadsheet:
      return spreadsheetRequirement(source, target, engines);
    case FileKind::document:
    case FileKind::ebook:
      return documentRequirement(source, target, engines);
    case FileKind::archive:
      return archiveRequirement(source, target, engines);
    case FileKind::subtitle:
      return std::nullopt;
  }
  return std::nullopt;
}

Requirement toolRequirement(FileKind kind,
                            std::string_view source,
                            std::string_view tool,
                            EngineLookup& engines) {
  if (kind == FileKind::pdf) {
    return tool == "compress" ? toolNeeds("qpdf", "qpdf", engines) : std::nullopt;
  }
  if (tool == "metadata") {
    return std::nullopt;
  }
  switch (kind) {
    case FileKind::image:
      return pictureRequirement(source, engines);
    case FileKind::video:
    case FileKind::audio: {
      Requirement missing = toolNeeds("ffmpeg", "ffmpeg", engines);
      return missing ? missing : toolNeeds("ffprobe", "ffprobe", engines);
    }
    default:
      return std::nullopt;
  }
}

}  // namespace tolvane::CapabilityCatalog
