#include "universal/dispatch/conversion.h"

#include <set>
#include <string>

#include "engine/primitives/conversion_failure.h"
#include "formats/delimited_text.h"
#include "formats/subtitles.h"
#include "formats/text_pdf.h"
#include "formats/workbook.h"
#include "platform/files/bytes.h"
#include "platform/files/file_names.h"
#include "platform/files/file_system.h"
#include "platform/text/text_file.h"
#include "universal/archives/archive.h"
#include "universal/dispatch/pdf_conversion.h"
#include "universal/documents/document_writer.h"
#include "universal/documents/pandoc.h"
#include "universal/documents/read_text.h"
#include "universal/documents/recognition.h"
#include "universal/images/image.h"
#include "universal/media/media.h"
#include "universal/office/office.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using Outputs = std::vector<fs::path>;

/// One conversion on its road.
struct Conversion {
  const FileInfo& info;
  std::string target;
  const Value::Map& options;
  const JobContext& context;
  std::string source;  ///< the input's extension in lower case
  fs::path output;     ///< where the result goes when it is a single file
};

/// Every page of a PDF as a picture.
Outputs pagePictures(const fs::path& pdf, const Conversion& c) {
  return c.context.native(c.target == "png" ? "pdf_png" : "pdf_jpeg", {pdf}, {});
}

Outputs fromImage(const Conversion& c) {
  if (c.target == "pdf") {
    return c.context.native("images_pdf", {normalized(c.info.url, c.context)}, {});
  }
  if (c.target == "docx") {
    const std::string text = recognize(normalized(c.info.url, c.context), c.context.token);
    document(text, c.output, "docx", Markup::markdown, c.context);
  } else {
    image(c.info.url, c.output, {}, c.options, c.context);
  }
  return {c.output};
}

Outputs fromMedia(const Conversion& c) {
  media(c.info, c.target, std::nullopt, c.output, c.options, c.context);
  return {c.output};
}

Outputs fromSubtitle(const Conversion& c) {
  const std::string text = UniversalFormats::subtitles(TextFile::read(c.info.url), c.target);
  FileSystem::writeAtomically(c.output, asBytes(text));
  return {c.output};
}

Outputs fromArchive(const Conversion& c) {
  archive(c.info.url, c.target, c.output, c.context);
  return {c.output};
}

void convertDelimited(const Conversion& c) {
  const auto delimiterOf = [](std::string_view extension) {
    return extension == "tsv" ? '\t' : ',';
  };
  const Table rows = UniversalFormats::csv(TextFile::read(c.info.url), delimiterOf(c.source));
  if (c.target == "xlsx") {
    UniversalFormats::workbook(
        rows, c.output, c.context.workspace, c.context.toolchain, c.context.token);
  } else {
    FileSystem::writeAtomically(c.output,
                                asBytes(UniversalFormats::delimited(rows, delimiterOf(c.target))));
  }
}

Outputs fromSpreadsheet(const Conversion& c) {
  static const std::set<std::string> tables = {"csv", "tsv", "xlsx"};
  if ((c.source == "csv" || c.source == "tsv") && tables.contains(c.target)) {
    convertDelimited(c);
  } else if (c.source == "numbers") {
    appleOffice(c.info, c.target, c.output, c.context);
  } else {
    office(c.info.url, c.target, c.output, c.context);
  }
  return {c.output};
}

Outputs fromPresentation(const Conversion& c) {
  const fs::path slides = c.context.workspace / "slides.pdf";
  if (c.source == "key") {
    appleOffice(c.info, "pdf", slides, c.context);
  } else {
    office(c.info.url, "pdf", slides, c.context);
  }
  if (c.target != "pdf") {
    return pagePictures(slides, c);
  }
  FileSystem::move(slides, c.output);
  return {c.output};
}

Outputs fromPages(const Conversion& c) {
  if (c.target == "pdf") {
    appleOffice(c.info, "pdf", c.output, c.context);
    return {c.output};
  }
  const fs::path exported = c.context.workspace / "pages.docx";
  appleOffice(c.info, "docx", exported, c.context);
  return convert({exported, FileKind::document, "DOCX"}, c.target, c.options, c.context);
}

/// The pages that a document has on paper.
Outputs layOutDocument(const Conversion& c) {
  static const std::set<std::string> plainTexts = {"md", "markdown", "txt", "epub", "textclipping"};
  const bool asPdf = c.target == "pdf";
  const fs::path pdf = asPdf ? c.output : c.context.workspace / "document.pdf";
  if (!plainTexts.contains(c.source) && c.context.toolchain.find("soffice")) {
    office(c.info.url, "pdf", pdf, c.context);
  } else {
    UniversalFormats::textPDF(readText(c.info, c.context), pdf, c.context.token);
  }
  return asPdf ? Outputs{pdf} : pagePictures(pdf, c);
}

Outputs fromDocument(const Conversion& c) {
  static const std::set<std::string> paged = {"pdf", "png", "jpg"};
  static const std::set<std::string> ownReaders = {"rtf", "rtfd", "textclipping"};
  if (c.source == "pages") {
    return fromPages(c);
  }
  if (paged.contains(c.target)) {
    return layOutDocument(c);
  }
  if (ownReaders.contains(c.source)) {
    document(readText(c.info, c.context), c.output, c.target, Markup::plain, c.context);
  } else {
    pandoc(reader(c.source), writer(c.target), c.info.url, c.output, c.context);
  }
  return {c.output};
}

}  // namespace

Outputs convert(const FileInfo& info,
                std::string_view target,
                const Value::Map& options,
                const JobContext& context) {
  const Conversion c = {
      info,
      std::string(target),
      options,
      context,
      FileNames::lowerExtension(info.url),
      context.workspace / ("result." + std::string(target == "gz" ? "tar.gz" : target))};
  switch (info.kind) {
    case FileKind::image:
      return fromImage(c);
    case FileKind::pdf:
      return convertPdf(info.url, c.target, c.output, options, context);
    case FileKind::video:
    case FileKind::audio:
      return fromMedia(c);
    case FileKind::subtitle:
      return fromSubtitle(c);
    case FileKind::archive:
      return fromArchive(c);
    case FileKind::spreadsheet:
      return fromSpreadsheet(c);
    case FileKind::presentation:
      return fromPresentation(c);
    case FileKind::document:
    case FileKind::ebook:
      return fromDocument(c);
  }
  throw ConversionFailure::message("No conversion engine matches this file.");
}

}  // namespace tolvane::UniversalEngine
