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
#include "universal/documents/rich_text_document.h"
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
Outputs pagePictures(const fs::path& pdf, const Conversion& conversion) {
  return conversion.context.native(conversion.target == "png" ? "pdf_png" : "pdf_jpeg", {pdf}, {});
}

Outputs fromImage(const Conversion& conversion) {
  if (conversion.target == "pdf") {
    return conversion.context.native(
        "images_pdf", {normalized(conversion.info.url, conversion.context)}, {});
  }
  if (conversion.target == "docx") {
    const std::string text =
        recognize(normalized(conversion.info.url, conversion.context), conversion.context.token);
    document(text, conversion.output, "docx", Markup::markdown, conversion.context);
  } else {
    image(conversion.info.url, conversion.output, {}, conversion.options, conversion.context);
  }
  return {conversion.output};
}

Outputs fromMedia(const Conversion& conversion) {
  media(conversion.info,
        conversion.target,
        std::nullopt,
        conversion.output,
        conversion.options,
        conversion.context);
  return {conversion.output};
}

Outputs fromSubtitle(const Conversion& conversion) {
  const std::string text =
      UniversalFormats::subtitles(TextFile::read(conversion.info.url), conversion.target);
  FileSystem::writeAtomically(conversion.output, asBytes(text));
  return {conversion.output};
}

Outputs fromArchive(const Conversion& conversion) {
  archive(conversion.info.url, conversion.target, conversion.output, conversion.context);
  return {conversion.output};
}

void convertDelimited(const Conversion& conversion) {
  const auto delimiterOf = [](std::string_view extension) {
    return extension == "tsv" ? '\t' : ',';
  };
  const Table rows =
      UniversalFormats::csv(TextFile::read(conversion.info.url), delimiterOf(conversion.source));
  if (conversion.target == "xlsx") {
    UniversalFormats::workbook(rows,
                               conversion.output,
                               conversion.context.workspace,
                               conversion.context.toolchain,
                               conversion.context.token);
  } else {
    FileSystem::writeAtomically(
        conversion.output,
        asBytes(UniversalFormats::delimited(rows, delimiterOf(conversion.target))));
  }
}

Outputs fromSpreadsheet(const Conversion& conversion) {
  static const std::set<std::string> tables = {"csv", "tsv", "xlsx"};
  if ((conversion.source == "csv" || conversion.source == "tsv") &&
      tables.contains(conversion.target)) {
    convertDelimited(conversion);
  } else if (conversion.source == "numbers") {
    appleOffice(conversion.info, conversion.target, conversion.output, conversion.context);
  } else {
    office(conversion.info.url, conversion.target, conversion.output, conversion.context);
  }
  return {conversion.output};
}

Outputs fromPresentation(const Conversion& conversion) {
  const fs::path slides = conversion.context.workspace / "slides.pdf";
  if (conversion.source == "key") {
    appleOffice(conversion.info, "pdf", slides, conversion.context);
  } else {
    office(conversion.info.url, "pdf", slides, conversion.context);
  }
  if (conversion.target != "pdf") {
    return pagePictures(slides, conversion);
  }
  FileSystem::move(slides, conversion.output);
  return {conversion.output};
}

Outputs fromPages(const Conversion& conversion) {
  if (conversion.target == "pdf") {
    appleOffice(conversion.info, "pdf", conversion.output, conversion.context);
    return {conversion.output};
  }
  const fs::path exported = conversion.context.workspace / "pages.docx";
  appleOffice(conversion.info, "docx", exported, conversion.context);
  return convert({exported, FileKind::document, "DOCX"},
                 conversion.target,
                 conversion.options,
                 conversion.context);
}

/// The pages that a document has on paper.
Outputs layOutDocument(const Conversion& conversion) {
  static const std::set<std::string> plainTexts = {"md", "markdown", "txt", "epub", "textclipping"};
  const bool asPdf = conversion.target == "pdf";
  const fs::path pdf = asPdf ? conversion.output : conversion.context.workspace / "document.pdf";
  if (!plainTexts.contains(conversion.source) && conversion.context.toolchain.find("soffice")) {
    const fs::path& given = conversion.info.url;
    office(conversion.source == "rtfd"
               ? richTextFileOf(given, conversion.context.workspace / "document.rtf")
               : given,
           "pdf",
           pdf,
           conversion.context);
  } else {
    UniversalFormats::textPDF(
        readText(conversion.info, conversion.context), pdf, conversion.context.token);
  }
  return asPdf ? Outputs{pdf} : pagePictures(pdf, conversion);
}

/// Whether the text is written as it stands: pandoc does not read the format, or it is not there
/// and the result is one that holds nothing but text.
bool isWrittenWithoutPandoc(const Conversion& conversion) {
  static const std::set<std::string> ownReaders = {"rtf", "rtfd", "textclipping"};
  static const std::set<std::string> plainTexts = {"md", "markdown", "txt"};
  static const std::set<std::string> ownWriters = {"txt", "md", "rtf", "html"};
  return ownReaders.contains(conversion.source) ||
         (plainTexts.contains(conversion.source) && ownWriters.contains(conversion.target) &&
          !conversion.context.toolchain.find("pandoc"));
}

void writeText(const Conversion& conversion) {
  // A Markdown text that stays one has nothing to escape.
  const bool isSame =
      conversion.target == "md" && (conversion.source == "md" || conversion.source == "markdown");
  document(readText(conversion.info, conversion.context),
           conversion.output,
           isSame ? "txt" : conversion.target,
           Markup::plain,
           conversion.context);
}

Outputs fromDocument(const Conversion& conversion) {
  static const std::set<std::string> paged = {"pdf", "png", "jpg"};
  if (conversion.source == "pages") {
    return fromPages(conversion);
  }
  if (paged.contains(conversion.target)) {
    return layOutDocument(conversion);
  }
  if (isWrittenWithoutPandoc(conversion)) {
    writeText(conversion);
  } else {
    pandoc(conversion.context,
           reader(conversion.source),
           writer(conversion.target),
           conversion.info.url,
           conversion.output);
  }
  return {conversion.output};
}

}  // namespace

Outputs convert(const FileInfo& info,
                std::string_view target,
                const Value::Map& options,
                const JobContext& context) {
  const Conversion conversion = {
      info,
      std::string(target),
      options,
      context,
      FileNames::lowerExtension(info.url),
      context.workspace / ("result." + std::string(target == "gz" ? "tar.gz" : target))};
  switch (info.kind) {
    case FileKind::image:
      return fromImage(conversion);
    case FileKind::pdf:
      return convertPdf(info, conversion.target, conversion.output, options, context);
    case FileKind::video:
    case FileKind::audio:
      return fromMedia(conversion);
    case FileKind::subtitle:
      return fromSubtitle(conversion);
    case FileKind::archive:
      return fromArchive(conversion);
    case FileKind::spreadsheet:
      return fromSpreadsheet(conversion);
    case FileKind::presentation:
      return fromPresentation(conversion);
    case FileKind::document:
    case FileKind::ebook:
      return fromDocument(conversion);
  }
  throw ConversionFailure::message("No conversion engine matches this file.");
}

}  // namespace tolvane::UniversalEngine
